// Answers the editor's dialogs and questions from a script, and records what was shown.
#pragma once

#include <QStringList>
#include <deque>

#include "editor/prompts.h"

namespace mw::test {

class ScriptedPrompts : public Prompts {
  public:
    struct Shown {
        QString text;
        PromptIcon icon;
    };

    QString OpenFileName(QWidget*, const QString& title, const QString& filter,
                         const QString& initial) override {
        titles.push_back(title);
        filters.push_back(filter);
        initials.push_back(initial);
        return Next(fileNames);
    }
    QString SaveFileName(QWidget* parent, const QString& title, const QString& filter,
                         const QString& initial) override {
        return OpenFileName(parent, title, filter, initial);
    }
    void Message(QWidget*, const QString& text, PromptIcon icon) override {
        messages.push_back({text, icon});
    }
    QMessageBox::StandardButton Ask(QWidget*, const QString& text, QMessageBox::StandardButtons,
                                    PromptIcon) override {
        questions.push_back(text);
        if (answers.empty()) return QMessageBox::Cancel;
        const auto a = answers.front();
        answers.pop_front();
        return a;
    }

    QColor ChooseColor(QWidget*, const QColor& initial) override {
        colorsOffered.push_back(initial);
        return chosenColor;
    }

    int Choose(QWidget*, const QString& text, const QStringList&, PromptIcon) override {
        questions.push_back(text);
        if (choices.empty()) return -1;
        const int c = choices.front();
        choices.pop_front();
        return c;
    }

    std::deque<int> choices;  // the buttons Choose answers with, in turn (-1 when empty)
    QColor chosenColor;       // invalid: the dialog is cancelled
    std::vector<QColor> colorsOffered;
    std::deque<QString> fileNames;  // what the file dialogs return, in turn ("" cancels)
    std::deque<QMessageBox::StandardButton> answers;
    QStringList titles, filters, initials, questions;
    std::vector<Shown> messages;

  private:
    static QString Next(std::deque<QString>& queue) {
        if (queue.empty()) return {};
        QString s = queue.front();
        queue.pop_front();
        return s;
    }
};

}  // namespace mw::test
