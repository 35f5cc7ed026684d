#include "editor/dialogs/about_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "model/version.h"

namespace mw {

frmAbout::frmAbout(const QPixmap& logo, QWidget* parent) : QDialog(parent) {
    setObjectName("frmAbout");
    setWindowTitle("About Meshwright");
    auto* layout = new QVBoxLayout(this);
    auto* picture = new QLabel(this);
    picture->setPixmap(logo);
    picture->setAlignment(Qt::AlignCenter);
    layout->addWidget(picture);
    auto* version = new QLabel(QString::fromStdString(VersionText()), this);
    version->setObjectName("lblVersion");
    QFont bold = version->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.3);
    version->setFont(bold);
    version->setAlignment(Qt::AlignCenter);
    layout->addWidget(version);
    auto* blurb =
        new QLabel("An editor for the 3-D models (OOF) and rooms (ORF) of Descent 3.", this);
    blurb->setAlignment(Qt::AlignCenter);
    blurb->setWordWrap(true);
    layout->addWidget(blurb);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    layout->addWidget(buttons);
}

}  // namespace mw
