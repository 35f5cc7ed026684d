// Tools > "Test in Game": the game started on the mission, its output shown as it comes while
// the editor keeps working, Stop to end it, and when it ends the models, textures and pages
// its output says it could not load.
#pragma once

#include <QProcess>
#include <QWidget>

#include "convert/game_run.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTreeWidget;

namespace mw {

class GameTestWindow : public QWidget {
    Q_OBJECT
  public:
    explicit GameTestWindow(QWidget* parent = nullptr);
    ~GameTestWindow() override;

    // Prepares the scratch folder and starts the game. "" or why it was not started (shown
    // in the window too).
    QString Start(const PlaySetup& setup);
    // Ends the game by its process.
    void Stop();
    bool IsRunning() const { return process_.state() != QProcess::NotRunning; }

    QPlainTextEdit& output() { return *output_; }
    QTreeWidget& problems() { return *problems_; }
    QLabel& status() { return *status_; }

  signals:
    void gameEnded();

  protected:
    void closeEvent(class QCloseEvent* event) override;

  private:
    void Read();
    void Ended(int exitCode, QProcess::ExitStatus status);

    QProcess process_;
    GameLogReader log_;
    bool stopped_ = false;
    QLabel* command_ = nullptr;
    QLabel* status_ = nullptr;
    QPlainTextEdit* output_ = nullptr;
    QTreeWidget* problems_ = nullptr;
    QPushButton* stop_ = nullptr;
};

}  // namespace mw
