#include "editor/dialogs/progress_dialog.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

namespace mw {

frmProgress::frmProgress(QWidget* parent) : QDialog(parent) {
    setObjectName("frmProgress");
    setWindowTitle("Meshwright");
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    label_ = new QLabel(this);
    label_->setObjectName("lblProgress");
    label_->setMinimumWidth(320);
    bar_ = new QProgressBar(this);
    bar_->setObjectName("barProgress");
    bar_->setRange(0, 100);
    bar_->setAccessibleName("Progress");
    layout->addWidget(label_);
    layout->addWidget(bar_);
}

void frmProgress::Begin() {
    bar_->setValue(0);
    show();
    QApplication::processEvents();
}

void frmProgress::End() {
    hide();
    QApplication::processEvents();
}

void frmProgress::Report(int percent, const std::string& text) {
    bar_->setValue(percent);
    if (!text.empty()) label_->setText(QString::fromStdString(text));
    repaint();
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

QString frmProgress::text() const {
    return label_->text();
}

int frmProgress::value() const {
    return bar_->value();
}

}  // namespace mw
