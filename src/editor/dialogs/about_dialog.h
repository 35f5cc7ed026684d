// frmAbout: the program's name and version.
#pragma once

#include <QDialog>

namespace mw {

class frmAbout : public QDialog {
    Q_OBJECT
  public:
    frmAbout(const QPixmap& logo, QWidget* parent = nullptr);
};

}  // namespace mw
