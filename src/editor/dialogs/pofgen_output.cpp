#include "editor/dialogs/pofgen_output.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace mw {

frmPOFGEN::frmPOFGEN(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName("frmPOFGEN");
    setWindowTitle("POFGEN Output");
    txtOutput_ = new QPlainTextEdit(this);
    txtOutput_->setObjectName("txtOutput");
    txtOutput_->setAccessibleName("POFGEN Output");
    txtOutput_->setReadOnly(true);
    txtOutput_->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtOutput_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(txtOutput_);
    resize(640, 420);
}

void frmPOFGEN::SetOutput(const QString& text) {
    txtOutput_->setPlainText(text);
}

QString frmPOFGEN::output() const {
    return txtOutput_->toPlainText();
}

}  // namespace mw
