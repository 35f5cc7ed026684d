// The model panel ("Model"): the sub-object count, the model radius, and the model's one
// special point (switched off and on without losing its data).
#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;

#include "editor/edit_commands.h"

namespace mw {

class Document;
class spinControl;

class ModelPanel : public QWidget {
    Q_OBJECT
  public:
    ModelPanel(Document& doc, QWidget* parent = nullptr);

    // Fills the panel from the model.
    void ShowModelPanel();

  private:
    void connectSignals();
    void EnableSpecialFields(bool on);
    void StoreSpecialText(EditField field);
    void StoreSpecialNumbers(EditField field);

    Document& doc_;
    bool filling_ = false;
    QLabel* lblNumSubModels_ = nullptr;
    QCheckBox* chkShowModelRadius_ = nullptr;
    spinControl* txtModelRadius_ = nullptr;
    QCheckBox* chkUseSPCL_ = nullptr;
    QLineEdit* txtSPCLName_ = nullptr;
    QLineEdit* txtSPCLProperty_ = nullptr;
    QCheckBox* chkShowSPCLRadius_ = nullptr;
    spinControl* txtSPCLRadius_ = nullptr;
    spinControl* txtSPCLpos_[3]{};
};

}  // namespace mw
