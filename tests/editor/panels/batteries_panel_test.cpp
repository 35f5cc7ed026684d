// The batteries panel alone over a document.
#include "editor/panels/batteries_panel.h"

#include <gtest/gtest.h>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include "editor/widgets/spin_control.h"
#include "support/sample_document.h"

namespace mw {
namespace {

using test::SavedBytes;

QStringList Texts(const QListWidget* list) {
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts << list->item(i)->text();
    return texts;
}

class BatteriesPanelTest : public ::testing::Test {
  protected:
    BatteriesPanelTest() : panel_(sample_.doc) { panel_.show(); }

    Document& doc() { return sample_.doc; }
    template <typename T>
    T* Find(const char* name) {
        T* w = panel_.findChild<T*>(name);
        EXPECT_NE(w, nullptr) << name;
        return w;
    }
    QListWidget* Available() { return Find<QListWidget>("lstAvailableWBAT"); }
    QListWidget* Assigned() { return Find<QListWidget>("lstAssignedWBAT"); }
    QPushButton* Button(const char* name) { return Find<QPushButton>(name); }
    void Click(QListWidget* list, const QString& text) {
        const auto found = list->findItems(text, Qt::MatchExactly);
        ASSERT_FALSE(found.isEmpty()) << text.toStdString();
        list->setCurrentItem(found.front());
        emit list->itemClicked(found.front());
    }
    void CurrentBattery(int n) { Find<spinControl>("txtCurrentWBAT")->SetValue(float(n)); }
    void ExpectEmptyState() {
        EXPECT_EQ(Find<QLabel>("lblNumWBAT")->text(), "0");
        EXPECT_TRUE(Button("cmdAddWBAT")->isEnabled());
        for (const char* name : {"txtCurrentWBAT", "cmdDeleteWBAT", "lstAvailableWBAT",
                                 "lstAssignedWBAT", "cmdAddToWBAT", "cmdRemoveFromWBAT"}) {
            EXPECT_FALSE(Find<QWidget>(name)->isEnabled()) << name;
        }
        EXPECT_EQ(Available()->count(), 0);
        EXPECT_EQ(Assigned()->count(), 0);
    }

    test::SampleDocument sample_;
    BatteriesPanel panel_;
};

TEST_F(BatteriesPanelTest, ListsTheCurrentBatteryAndWhatIsAvailable) {
    EXPECT_EQ(Find<QLabel>("lblNumWBAT")->text(), "2");
    EXPECT_EQ(Find<spinControl>("txtCurrentWBAT")->Max(), 2.0f);
    EXPECT_EQ(Texts(Assigned()), (QStringList{"GPNT0", "GPNT1"}));
    EXPECT_EQ(Texts(Available()), (QStringList{"turret", "GPNT2"}));
    // Battery 2 holds the turret; a gun point of battery 1 is still available for it.
    CurrentBattery(2);
    EXPECT_EQ(Texts(Assigned()), (QStringList{"turret", "GPNT2"}));
    EXPECT_EQ(Texts(Available()), (QStringList{"GPNT0", "GPNT1"}));
    EXPECT_EQ(doc().undoStack().count(), 0);
}

TEST_F(BatteriesPanelTest, ClickingAnEntrySelectsItsTurretOrGunPoint) {
    CurrentBattery(2);
    Click(Assigned(), "turret");
    EXPECT_EQ(doc().selection().curSOBJ, 3);
    EXPECT_EQ(doc().selection().hiliteSOBJ, 3);
    EXPECT_TRUE(Button("cmdRemoveFromWBAT")->isEnabled());
    EXPECT_FALSE(Button("cmdAddToWBAT")->isEnabled());
    Click(Available(), "GPNT1");
    EXPECT_EQ(doc().selection().curSOBJ, -1);
    EXPECT_EQ(doc().selection().curPNTtype, "GPNT");
    EXPECT_EQ(doc().selection().curPNT, 1);
    EXPECT_TRUE(Assigned()->selectedItems().isEmpty());
    EXPECT_TRUE(Button("cmdAddToWBAT")->isEnabled());
    EXPECT_FALSE(Button("cmdRemoveFromWBAT")->isEnabled());
}

TEST_F(BatteriesPanelTest, TwoTurretsOfOneNameStandForTheFirstInSlotOrder) {
    ModelData& m = doc().model();
    for (int s : {2, 1})
        m.Sub(s).PropertyFlags = kPropFov;
    m.Sub(2).Name = "wing_left";  // records 1 and 2 are both "wing_left"
    ASSERT_EQ(m.Head(1), 1);
    std::swap(m.MergeTable[1], m.MergeTable[2]);  // record 2 is saved first
    doc().ResetModel(true);
    EXPECT_EQ(Texts(Available()), (QStringList{"wing_left", "wing_left", "turret", "GPNT2"}));
    for (int row : {0, 1}) {
        Available()->setCurrentRow(row);
        emit Available()->itemClicked(Available()->item(row));
        EXPECT_EQ(doc().selection().curSOBJ, 2);
    }
    Button("cmdAddToWBAT")->click();
    EXPECT_EQ(m.Batteries[0].Turrets, (std::vector<std::int32_t>{2}));
}

TEST_F(BatteriesPanelTest, AddingAndRemovingEntriesAreUndoable) {
    const auto before = SavedBytes(doc().model());
    Click(Available(), "GPNT2");
    Button("cmdAddToWBAT")->click();
    EXPECT_EQ(doc().model().Batteries[0].GunPoints, (std::vector<std::int32_t>{0, 1, 2}));
    EXPECT_EQ(Texts(Assigned()), (QStringList{"GPNT0", "GPNT1", "GPNT2"}));
    EXPECT_EQ(Texts(Available()), (QStringList{"turret"}));
    EXPECT_FALSE(Button("cmdAddToWBAT")->isEnabled());
    Click(Assigned(), "GPNT0");
    Button("cmdRemoveFromWBAT")->click();
    EXPECT_EQ(doc().model().Batteries[0].GunPoints, (std::vector<std::int32_t>{1, 2}));
    EXPECT_EQ(doc().model().Batteries[1].GunPoints, (std::vector<std::int32_t>{2}));
    EXPECT_EQ(doc().undoStack().count(), 2);
    doc().undoStack().undo();
    doc().undoStack().undo();
    EXPECT_EQ(SavedBytes(doc().model()), before);
    EXPECT_EQ(Texts(Assigned()), (QStringList{"GPNT0", "GPNT1"}));
}

TEST_F(BatteriesPanelTest, AFullBatteryTakesNoMoreGunPoints) {
    ModelData& m = doc().model();
    m.GunPoints.resize(10);
    m.Batteries[0].GunPoints = {0, 1, 2, 3, 4, 5, 6, 7};
    doc().ResetModel(true);
    Click(Available(), "GPNT8");
    EXPECT_FALSE(Button("cmdAddToWBAT")->isEnabled());
    EXPECT_EQ(doc().selection().curPNT, 8);  // still selected, only not addable
}

TEST_F(BatteriesPanelTest, BatteriesAreAddedAndDeleted) {
    ModelData& m = doc().model();
    m.Batteries.clear();
    doc().ResetModel(true);
    ExpectEmptyState();
    const auto before = SavedBytes(m);
    Button("cmdAddWBAT")->click();
    EXPECT_EQ(m.Batteries.size(), 1u);
    EXPECT_EQ(Find<QLabel>("lblNumWBAT")->text(), "1");
    EXPECT_EQ(Find<spinControl>("txtCurrentWBAT")->Value(), 1.0f);
    EXPECT_TRUE(Assigned()->isEnabled());
    EXPECT_EQ(Texts(Available()), (QStringList{"turret", "GPNT0", "GPNT1", "GPNT2"}));
    Button("cmdDeleteWBAT")->click();
    EXPECT_TRUE(m.Batteries.empty());
    ExpectEmptyState();
    doc().undoStack().undo();
    EXPECT_EQ(Find<QLabel>("lblNumWBAT")->text(), "1");
    doc().undoStack().undo();
    EXPECT_EQ(SavedBytes(m), before);
    ExpectEmptyState();

    // Deleting the last of several leaves the new last one current; 64 is the limit.
    while (m.Batteries.size() < static_cast<std::size_t>(kMaxBatteries) - 1)
        m.Batteries.emplace_back();
    doc().ResetModel(true);
    Button("cmdAddWBAT")->click();
    EXPECT_FALSE(Button("cmdAddWBAT")->isEnabled());
    CurrentBattery(64);
    Button("cmdDeleteWBAT")->click();
    EXPECT_EQ(Find<spinControl>("txtCurrentWBAT")->Value(), 63.0f);
    EXPECT_TRUE(Button("cmdAddWBAT")->isEnabled());
}

}  // namespace
}  // namespace mw
