#include "editor/dialogs/ogf_path_dialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileSystemModel>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QListView>
#include <QTreeView>
#include <QVBoxLayout>

namespace mw {

frmOGFPath::frmOGFPath(const QString& start, QWidget* parent) : QDialog(parent) {
    setObjectName("frmOGFPath");
    setWindowTitle("Select Custom OGF/OAF Path");
    dirs_ = new QFileSystemModel(this);
    dirs_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot | QDir::Drives);
    dirs_->setRootPath(QDir::rootPath());
    images_ = new QFileSystemModel(this);
    images_->setFilter(QDir::Files);
    images_->setNameFilters({"*.ogf", "*.oaf", "*.OGF", "*.OAF"});
    images_->setNameFilterDisables(false);

    Dir1_ = new QTreeView(this);
    Dir1_->setObjectName("Dir1");
    Dir1_->setAccessibleName("Folders");
    Dir1_->setModel(dirs_);
    for (int c = 1; c < dirs_->columnCount(); ++c)
        Dir1_->hideColumn(c);
    Dir1_->header()->hide();
    File1_ = new QListView(this);
    File1_->setObjectName("File1");
    File1_->setAccessibleName("Texture Files");
    File1_->setModel(images_);
    File1_->setSelectionMode(QAbstractItemView::NoSelection);

    auto* lists = new QHBoxLayout;
    lists->addWidget(Dir1_, 3);
    lists->addWidget(File1_, 2);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(lists, 1);
    layout->addWidget(buttons);
    resize(560, 400);

    connect(Dir1_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                const QString path = dirs_->filePath(current);
                File1_->setRootIndex(images_->setRootPath(path));
            });
    SelectFolder(QFileInfo(start).isDir() ? start : QDir::homePath());
}

void frmOGFPath::SelectFolder(const QString& path) {
    const QModelIndex index = dirs_->index(QDir(path).absolutePath());
    if (!index.isValid()) return;
    Dir1_->setCurrentIndex(index);
    Dir1_->scrollTo(index);
}

QString frmOGFPath::folder() const {
    const QModelIndex current = Dir1_->currentIndex();
    return current.isValid() ? dirs_->filePath(current) : QString();
}

QString frmOGFPath::Choose(QWidget* parent, const QString& start) {
    frmOGFPath dialog(start, parent);
    return dialog.exec() == QDialog::Accepted ? dialog.folder() : QString();
}

}  // namespace mw
