// The weapon batteries panel ("Batteries"): adds and deletes batteries and moves turrets and
// gun points between the current battery's "Assigned" list and the "Available" list. A click
// in either list selects that turret or gun point in the tree and the viewport, leaving the
// tab on "Batteries".
#pragma once

#include <QWidget>

class QLabel;
class QListWidget;
class QPushButton;

namespace mw {

class Document;
class spinControl;

class BatteriesPanel : public QWidget {
    Q_OBJECT
  public:
    BatteriesPanel(Document& doc, QWidget* parent = nullptr);

    void PopulateBatteryPanel();
    // Fills both lists for battery n (1-based).
    void PopulateBatteryLists(int n);

  protected:
    void showEvent(QShowEvent* e) override;

  private:
    void connectSignals();
    int currentBattery() const;  // 0-based, -1 with no batteries
    void ListClicked(QListWidget* list);
    void MoveEntry(bool add);

    Document& doc_;
    bool filling_ = false;
    QLabel* lblNumWBAT_ = nullptr;
    QPushButton* cmdAddWBAT_ = nullptr;
    spinControl* txtCurrentWBAT_ = nullptr;
    QPushButton* cmdDeleteWBAT_ = nullptr;
    QListWidget* lstAvailableWBAT_ = nullptr;
    QListWidget* lstAssignedWBAT_ = nullptr;
    QPushButton* cmdAddToWBAT_ = nullptr;
    QPushButton* cmdRemoveFromWBAT_ = nullptr;
};

}  // namespace mw
