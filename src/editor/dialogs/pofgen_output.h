// frmPOFGEN: what a model compiler printed, in one text box filling the window. It stays
// open beside the main window.
#pragma once

#include <QWidget>

class QPlainTextEdit;

namespace mw {

class frmPOFGEN : public QWidget {
    Q_OBJECT
  public:
    explicit frmPOFGEN(QWidget* parent = nullptr);

    void SetOutput(const QString& text);
    QString output() const;

  private:
    QPlainTextEdit* txtOutput_ = nullptr;
};

}  // namespace mw
