// "Check Model...": the findings of the game-limits check in a list that follows the model
// as it is edited. Double-clicking a finding selects its sub-object or point.
#pragma once

#include <QDialog>
#include <vector>

#include "editor/model_check.h"

class QLabel;
class QTreeWidget;

namespace mw {

class Document;

// Where a finding is, for people: "turret", "GPNT 3", "texture ship_wing", "battery 2" or
// "model".
QString FindingPlace(const ModelData& model, const Finding& finding);

class CheckDialog : public QDialog {
    Q_OBJECT
  public:
    CheckDialog(Document& doc, ModelCheck check, QWidget* parent = nullptr);

    // Runs the check again and fills the list.
    void Refresh();
    const std::vector<Finding>& findings() const { return findings_; }
    // Selects the part of finding i in the tree and the viewport.
    void SelectFinding(int i);

  private:
    Document& doc_;
    ModelCheck check_;
    std::vector<Finding> findings_;
    QLabel* summary_ = nullptr;
    QLabel* details_ = nullptr;  // the current finding's whole message
    QTreeWidget* list_ = nullptr;
};

}  // namespace mw
