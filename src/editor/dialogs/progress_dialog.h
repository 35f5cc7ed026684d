// frmProgress: the bar shown while the game's archives and tables are read. It repaints on
// every report, so the program never looks frozen.
#pragma once

#include <QDialog>

#include "gamedata/progress.h"

class QLabel;
class QProgressBar;

namespace mw {

class frmProgress : public QDialog, public ProgressSink {
    Q_OBJECT
  public:
    explicit frmProgress(QWidget* parent = nullptr);

    void Begin() override;
    void End() override;
    void Report(int percent, const std::string& text) override;

    QString text() const;
    int value() const;

  private:
    QLabel* label_ = nullptr;
    QProgressBar* bar_ = nullptr;
};

}  // namespace mw
