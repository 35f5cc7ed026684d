#include "editor/panels/batteries_panel.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "editor/document.h"
#include "editor/file_text.h"
#include "editor/panel_commands.h"
#include "editor/panels/panel_widgets.h"
#include "editor/widgets/spin_control.h"
#include "editor/widgets/value_label.h"
#include "model/batteries.h"

namespace mw {
namespace {

QPushButton* MakeButton(QWidget* parent, const QString& name, const QString& caption) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    return button;
}

QListWidget* MakeList(QWidget* parent, const QString& name, const QString& caption) {
    auto* list = new QListWidget(parent);
    list->setObjectName(name);
    list->setAccessibleName(caption);
    list->setMinimumHeight(90);
    list->setMaximumHeight(160);
    return list;
}

void Fill(QListWidget* list, const std::vector<std::string>& entries) {
    list->clear();
    for (const std::string& entry : entries)
        list->addItem(FromFileText(entry));
}

std::string EntryText(const QListWidgetItem* item) {
    return ToFileText(item->text());
}

}  // namespace

BatteriesPanel::BatteriesPanel(Document& doc, QWidget* parent) : QWidget(parent), doc_(doc) {
    setObjectName("fraBatteries");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeHeading(this, "Weapons Batteries"));

    auto* general = new QGroupBox("General", this);
    auto* generalGrid = new QGridLayout(general);
    lblNumWBAT_ = new QLabel("0", general);
    lblNumWBAT_->setObjectName("lblNumWBAT");
    AddRow(generalGrid, 0, "# of Weapons Batteries:", lblNumWBAT_);
    SetValueCaption(lblNumWBAT_, lblNumWBAT_->accessibleName());
    cmdAddWBAT_ = MakeButton(general, "cmdAddWBAT", "Add Battery");
    generalGrid->addWidget(cmdAddWBAT_, 1, 0, 1, 2);
    layout->addWidget(general);

    auto* battery = new QGroupBox("Battery Properties", this);
    auto* grid = new QGridLayout(battery);
    txtCurrentWBAT_ =
        MakeSpinner(battery, "txtCurrentWBAT", "Current Weapons Battery", 0, 0, "#0", 1, 1);
    txtCurrentWBAT_->setMinimumWidth(60);
    txtCurrentWBAT_->setMaximumWidth(80);
    auto* current = new QLabel("Current Weapons Battery:", battery);
    current->setBuddy(txtCurrentWBAT_);
    cmdDeleteWBAT_ = MakeButton(battery, "cmdDeleteWBAT", "Delete");
    auto* currentRow = new QHBoxLayout;
    currentRow->addWidget(current);
    currentRow->addWidget(txtCurrentWBAT_);
    currentRow->addStretch(1);
    grid->addLayout(currentRow, 0, 0, 1, 2);
    grid->addWidget(cmdDeleteWBAT_, 1, 1);
    grid->addWidget(new QLabel("Available", battery), 2, 0);
    grid->addWidget(new QLabel("Assigned", battery), 2, 1);
    lstAvailableWBAT_ = MakeList(battery, "lstAvailableWBAT", "Available");
    lstAssignedWBAT_ = MakeList(battery, "lstAssignedWBAT", "Assigned");
    grid->addWidget(lstAvailableWBAT_, 3, 0);
    grid->addWidget(lstAssignedWBAT_, 3, 1);
    cmdAddToWBAT_ = MakeButton(battery, "cmdAddToWBAT", "Add to Battery");
    cmdRemoveFromWBAT_ = MakeButton(battery, "cmdRemoveFromWBAT", "Remove from Battery");
    grid->addWidget(cmdAddToWBAT_, 4, 0);
    grid->addWidget(cmdRemoveFromWBAT_, 4, 1);
    layout->addWidget(battery);
    layout->addStretch(1);
    connectSignals();
    PopulateBatteryPanel();
}

void BatteriesPanel::connectSignals() {
    for (auto signal : {&Document::modelReset, &Document::batteriesChanged,
                        &Document::structureChanged, &Document::pointsChanged}) {
        connect(&doc_, signal, this, &BatteriesPanel::PopulateBatteryPanel);
    }
    // A renamed sub-object or a changed property changes the turret entries.
    connect(&doc_, &Document::subObjectChanged, this, &BatteriesPanel::PopulateBatteryPanel);
    connect(cmdAddWBAT_, &QPushButton::clicked, this,
            [this] { doc_.Apply(MakeAddBatteryCommand(doc_)); });
    connect(cmdDeleteWBAT_, &QPushButton::clicked, this, [this] {
        if (currentBattery() >= 0) doc_.Apply(MakeDeleteBatteryCommand(doc_, currentBattery()));
    });
    connect(txtCurrentWBAT_, &spinControl::Change, this, [this] {
        if (!filling_ && currentBattery() >= 0) PopulateBatteryLists(currentBattery() + 1);
    });
    // A click on the entry already selected selects its turret or gun point again.
    for (QListWidget* list : {lstAvailableWBAT_, lstAssignedWBAT_}) {
        connect(list, &QListWidget::itemSelectionChanged, this,
                [this, list] { ListClicked(list); });
        connect(list, &QListWidget::itemClicked, this, [this, list] { ListClicked(list); });
    }
    connect(cmdAddToWBAT_, &QPushButton::clicked, this, [this] { MoveEntry(true); });
    connect(cmdRemoveFromWBAT_, &QPushButton::clicked, this, [this] { MoveEntry(false); });
}

void BatteriesPanel::showEvent(QShowEvent* e) {
    QWidget::showEvent(e);
    PopulateBatteryPanel();
}

int BatteriesPanel::currentBattery() const {
    const int count = static_cast<int>(doc_.model().Batteries.size());
    const int n = static_cast<int>(txtCurrentWBAT_->Value());
    return n >= 1 && n <= count ? n - 1 : -1;
}

void BatteriesPanel::PopulateBatteryPanel() {
    filling_ = true;
    const int count = static_cast<int>(doc_.model().Batteries.size());
    ShowValue(lblNumWBAT_, QString::number(count));
    cmdAddWBAT_->setEnabled(count < kMaxBatteries);
    const bool any = count != 0;
    for (QWidget* w : std::initializer_list<QWidget*>{txtCurrentWBAT_, cmdDeleteWBAT_,
                                                      lstAvailableWBAT_, lstAssignedWBAT_}) {
        w->setEnabled(any);
    }
    cmdAddToWBAT_->setEnabled(false);
    cmdRemoveFromWBAT_->setEnabled(false);
    // The range clamps the value, so a deleted last battery leaves the new last one current.
    txtCurrentWBAT_->SetRange(any ? 1 : 0, static_cast<float>(count));
    filling_ = false;
    if (any) {
        PopulateBatteryLists(static_cast<int>(txtCurrentWBAT_->Value()));
    } else {
        lstAvailableWBAT_->clear();
        lstAssignedWBAT_->clear();
    }
}

void BatteriesPanel::PopulateBatteryLists(int n) {
    const QSignalBlocker blockAvailable(lstAvailableWBAT_);
    const QSignalBlocker blockAssigned(lstAssignedWBAT_);
    Fill(lstAssignedWBAT_, AssignedBatteryEntries(doc_.model(), n - 1));
    Fill(lstAvailableWBAT_, AvailableBatteryEntries(doc_.model(), n - 1));
    cmdAddToWBAT_->setEnabled(false);
    cmdRemoveFromWBAT_->setEnabled(false);
}

// A click in one list clears the other's selection, enables that list's button within the
// battery's limits, and selects the turret or gun point.
void BatteriesPanel::ListClicked(QListWidget* list) {
    const bool available = list == lstAvailableWBAT_;
    QPushButton* button = available ? cmdAddToWBAT_ : cmdRemoveFromWBAT_;
    QListWidgetItem* item = list->currentItem();
    if (item == nullptr || !item->isSelected()) {
        button->setEnabled(false);
        return;
    }
    QListWidget* other = available ? lstAssignedWBAT_ : lstAvailableWBAT_;
    {
        const QSignalBlocker block(other);
        other->clearSelection();
        (available ? cmdRemoveFromWBAT_ : cmdAddToWBAT_)->setEnabled(false);
    }
    const ModelData& model = doc_.model();
    const auto entry = ParseBatteryEntry(model, EntryText(item), !available);
    const int b = currentBattery();
    if (!entry || b < 0) {
        button->setEnabled(false);
        return;
    }
    const WeaponBattery& battery = model.Batteries[static_cast<std::size_t>(b)];
    const std::size_t used = entry->GunPoint ? battery.GunPoints.size() : battery.Turrets.size();
    button->setEnabled(!available || used < static_cast<std::size_t>(kMaxBatteryEntries));
    doc_.SetSelection(entry->GunPoint
                          ? PointSelected(doc_.selection(), PointType::GPNT, entry->Index)
                          : SubObjectSelected(doc_.selection(), entry->Index));
}

void BatteriesPanel::MoveEntry(bool add) {
    QListWidget* list = add ? lstAvailableWBAT_ : lstAssignedWBAT_;
    const QListWidgetItem* item = list->currentItem();
    const int b = currentBattery();
    if (item == nullptr || !item->isSelected() || b < 0) return;
    doc_.Apply(MakeBatteryEntryCommand(doc_, b, EntryText(item), add));
}

}  // namespace mw
