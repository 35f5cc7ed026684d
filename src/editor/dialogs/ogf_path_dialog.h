// frmOGFPath: picks the folder of loose texture images. A folder tree, and beside it the
// .ogf and .oaf files of the selected folder.
#pragma once

#include <QDialog>

class QFileSystemModel;
class QListView;
class QTreeView;

namespace mw {

class frmOGFPath : public QDialog {
    Q_OBJECT
  public:
    // Opens at `start` when that is a folder.
    explicit frmOGFPath(const QString& start, QWidget* parent = nullptr);

    // The selected folder; empty when none.
    QString folder() const;
    void SelectFolder(const QString& path);
    QListView& fileList() { return *File1_; }

    // Shows the dialog modally: the chosen folder, or empty on Cancel.
    static QString Choose(QWidget* parent, const QString& start);

  private:
    QFileSystemModel* dirs_ = nullptr;
    QFileSystemModel* images_ = nullptr;
    QTreeView* Dir1_ = nullptr;
    QListView* File1_ = nullptr;
};

}  // namespace mw
