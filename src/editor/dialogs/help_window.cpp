#include "editor/dialogs/help_window.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include "gamedata/install_paths.h"

namespace mw {

QString FindHelpIndex(const QString& programDir) {
    return QString::fromStdString(FindProgramFile(programDir.toStdString(), kManualIndex).string());
}

QString MissingHelpMessage() {
    return QString("Could not find '") + kManualIndex + "'. Make sure this file\n" +
           "is in Meshwrights directory and has the name above.";
}

HelpWindow::HelpWindow(const QString& index, QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName("frmHelp");
    setWindowTitle("Meshwright Help");
    auto* layout = new QVBoxLayout(this);
    auto* bar = new QHBoxLayout;
    auto* back = new QPushButton("Back", this);
    auto* home = new QPushButton("Contents", this);
    bar->addWidget(back);
    bar->addWidget(home);
    bar->addStretch(1);
    layout->addLayout(bar);
    browser_ = new QTextBrowser(this);
    browser_->setObjectName("helpBrowser");
    browser_->setAccessibleName("Help");
    browser_->setOpenExternalLinks(true);
    browser_->setSource(QUrl::fromLocalFile(index));
    layout->addWidget(browser_);
    connect(back, &QPushButton::clicked, browser_, &QTextBrowser::backward);
    connect(home, &QPushButton::clicked, browser_, &QTextBrowser::home);
    resize(760, 620);
}

}  // namespace mw
