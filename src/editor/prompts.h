// The questions and messages the editor puts to the user, behind one interface so that tests
// can answer them. Every box is captioned with the application title.
#pragma once

#include <QColor>
#include <QMessageBox>
#include <QString>
#include <QStringList>

#include "gamedata/progress.h"

class QWidget;

namespace mw {

inline constexpr const char* kAppTitle = "Meshwright";

enum class PromptIcon { None, Information, Exclamation, Question, Critical };

class Prompts {
  public:
    virtual ~Prompts() = default;
    // File dialogs: the chosen path, or empty when cancelled. Filters are Qt filter texts.
    virtual QString OpenFileName(QWidget* parent, const QString& title, const QString& filter,
                                 const QString& initial) = 0;
    virtual QString SaveFileName(QWidget* parent, const QString& title, const QString& filter,
                                 const QString& initial) = 0;
    virtual void Message(QWidget* parent, const QString& text, PromptIcon icon) = 0;
    // Asks with the given buttons; returns the one chosen.
    virtual QMessageBox::StandardButton Ask(QWidget* parent, const QString& text,
                                            QMessageBox::StandardButtons buttons,
                                            PromptIcon icon) = 0;
    // The colour dialog, preset to `initial`; an invalid colour when cancelled.
    virtual QColor ChooseColor(QWidget* parent, const QColor& initial) = 0;
    // Asks with buttons of these captions; returns the index of the one chosen, -1 when the
    // question was closed without an answer.
    virtual int Choose(QWidget* parent, const QString& text, const QStringList& buttons,
                       PromptIcon icon) = 0;
};

// Qt's dialogs and message boxes.
class DialogPrompts : public Prompts {
  public:
    QString OpenFileName(QWidget* parent, const QString& title, const QString& filter,
                         const QString& initial) override;
    QString SaveFileName(QWidget* parent, const QString& title, const QString& filter,
                         const QString& initial) override;
    void Message(QWidget* parent, const QString& text, PromptIcon icon) override;
    QMessageBox::StandardButton Ask(QWidget* parent, const QString& text,
                                    QMessageBox::StandardButtons buttons, PromptIcon icon) override;
    QColor ChooseColor(QWidget* parent, const QColor& initial) override;
    int Choose(QWidget* parent, const QString& text, const QStringList& buttons,
               PromptIcon icon) override;
};

// The game-data readers' messages as information boxes.
class PromptMessages : public MessageSink {
  public:
    PromptMessages(Prompts& prompts, QWidget* parent) : prompts_(prompts), parent_(parent) {}
    void Information(const std::string& text) override {
        prompts_.Message(parent_, QString::fromStdString(text), PromptIcon::Information);
    }

  private:
    Prompts& prompts_;
    QWidget* parent_;
};

}  // namespace mw
