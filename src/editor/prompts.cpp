#include "editor/prompts.h"

#include <QAbstractButton>
#include <QPushButton>
#include <algorithm>
#include <vector>

#include <QColorDialog>
#include <QFileDialog>

namespace mw {
namespace {

QMessageBox::Icon BoxIcon(PromptIcon icon) {
    switch (icon) {
        case PromptIcon::Information:
            return QMessageBox::Information;
        case PromptIcon::Exclamation:
            return QMessageBox::Warning;
        case PromptIcon::Question:
            return QMessageBox::Question;
        case PromptIcon::Critical:
            return QMessageBox::Critical;
        case PromptIcon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

}  // namespace

QString DialogPrompts::OpenFileName(QWidget* parent, const QString& title, const QString& filter,
                                    const QString& initial) {
    return QFileDialog::getOpenFileName(parent, title, initial, filter);
}

QString DialogPrompts::SaveFileName(QWidget* parent, const QString& title, const QString& filter,
                                    const QString& initial) {
    // The commands ask about overwriting themselves.
    return QFileDialog::getSaveFileName(parent, title, initial, filter, nullptr,
                                        QFileDialog::DontConfirmOverwrite);
}

void DialogPrompts::Message(QWidget* parent, const QString& text, PromptIcon icon) {
    QMessageBox box(BoxIcon(icon), kAppTitle, text, QMessageBox::Ok, parent);
    box.exec();
}

int DialogPrompts::Choose(QWidget* parent, const QString& text, const QStringList& buttons,
                          PromptIcon icon) {
    QMessageBox box(BoxIcon(icon), kAppTitle, text, QMessageBox::NoButton, parent);
    std::vector<QAbstractButton*> added;
    for (const QString& caption : buttons)
        added.push_back(box.addButton(caption, QMessageBox::AcceptRole));
    box.exec();
    const auto chosen = std::find(added.begin(), added.end(), box.clickedButton());
    return chosen == added.end() ? -1 : static_cast<int>(chosen - added.begin());
}

QMessageBox::StandardButton DialogPrompts::Ask(QWidget* parent, const QString& text,
                                               QMessageBox::StandardButtons buttons,
                                               PromptIcon icon) {
    QMessageBox box(BoxIcon(icon), kAppTitle, text, buttons, parent);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

QColor DialogPrompts::ChooseColor(QWidget* parent, const QColor& initial) {
    return QColorDialog::getColor(initial, parent, "Color Picker");
}

}  // namespace mw
