// The model and sub-object panels alone over a document: each edit changes the model through
// exactly one undo step, and undoing it restores the written bytes.
#include <gtest/gtest.h>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>

#include "editor/panels/model_panel.h"
#include "editor/panels/subobject_panel.h"
#include "editor/widgets/spin_control.h"
#include "model/geometry.h"
#include "support/sample_document.h"
#include "support/scripted_prompts.h"

namespace mw {
namespace {

using test::SavedBytes;

template <typename T>
T* Find(QWidget& panel, const char* name) {
    T* w = panel.findChild<T*>(name);
    EXPECT_NE(w, nullptr) << name;
    return w;
}

class SubObjectPanelTest : public ::testing::Test {
  protected:
    SubObjectPanelTest() : panel_(sample_.doc, prompts_) { panel_.show(); }

    Document& doc() { return sample_.doc; }
    void Choose(const QString& item) {
        auto* list = Find<QComboBox>(panel_, "cboProperties");
        const int index = list->findText(item);
        list->setCurrentIndex(index);
        emit list->activated(index);
    }

    test::SampleDocument sample_;
    test::ScriptedPrompts prompts_;
    SubObjectPanel panel_;
};

TEST_F(SubObjectPanelTest, ShowsTheSelectedSubObject) {
    doc().SelectSubObject(3);
    EXPECT_EQ(Find<QLineEdit>(panel_, "txtSOBJName")->text(), "turret");
    EXPECT_FLOAT_EQ(Find<spinControl>(panel_, "txtSOBJOffset_1")->Value(), 1.4f);
    EXPECT_EQ(Find<QComboBox>(panel_, "cboProperties")->currentText(), "Turret/FOV");
    EXPECT_FLOAT_EQ(Find<spinControl>(panel_, "txtFOV_1")->Value(), 3.0f);
    doc().SelectSubObject(6);
    EXPECT_EQ(Find<QComboBox>(panel_, "cboProperties")->currentText(), "None");
    doc().SelectSubObject(5);
    EXPECT_EQ(Find<QComboBox>(panel_, "cboProperties")->currentText(), "Glow/Thruster");
    EXPECT_FLOAT_EQ(Find<spinControl>(panel_, "txtGlow_3")->Value(), 1.5f);
    doc().SelectSubObject(4);
    EXPECT_EQ(Find<QComboBox>(panel_, "cboProperties")->currentText(), "Rotate");
    // A flag that is none of the listed ones shows "None".
    doc().model().Sub(6).PropertyFlags = 12345;
    doc().SelectSubObject(6);
    EXPECT_EQ(Find<QComboBox>(panel_, "cboProperties")->currentText(), "None");
    EXPECT_EQ(doc().undoStack().count(), 0);  // showing never edits
}

TEST_F(SubObjectPanelTest, MonitorStoresTheChosenMonitorsFlag) {
    doc().SelectSubObject(6);
    Find<QListWidget>(panel_, "lstMonitor")->setCurrentRow(2);
    Choose("Monitor01-08");
    EXPECT_EQ(doc().model().Sub(6).PropertyFlags, 64u);
    EXPECT_EQ(doc().model().Sub(6).Properties, "$monitor03");
    auto* monitors = Find<QListWidget>(panel_, "lstMonitor");
    emit monitors->itemClicked(monitors->item(5));
    EXPECT_EQ(doc().model().Sub(6).PropertyFlags, 512u);
    EXPECT_EQ(doc().undoStack().count(), 2);
}

TEST_F(SubObjectPanelTest, ATurretStaysInItsBatteriesUntilItsPropertyChanges) {
    Document& d = doc();
    d.SelectSubObject(3);
    Choose("Turret/FOV");
    ASSERT_EQ(d.model().Sub(3).PropertyFlags, static_cast<std::uint32_t>(kPropFov));
    const auto turrets = [&] { return d.model().Batteries[1].Turrets; };
    EXPECT_EQ(turrets(), std::vector<std::int32_t>{3});
    Find<spinControl>(panel_, "txtFOV_0")->SetValue(120.0f);
    EXPECT_EQ(d.model().Sub(3).Properties.rfind("$fov=120,", 0), 0u);
    EXPECT_EQ(turrets(), std::vector<std::int32_t>{3});
    Choose("Rotate");
    EXPECT_TRUE(turrets().empty());
    d.undoStack().undo();
    EXPECT_EQ(turrets(), std::vector<std::int32_t>{3});
}

TEST_F(SubObjectPanelTest, AnEmptyNameBringsTheOldOneBack) {
    doc().SelectSubObject(1);
    auto* name = Find<QLineEdit>(panel_, "txtSOBJName");
    name->setText("");
    emit name->editingFinished();
    EXPECT_EQ(name->text(), "wing_left");
    EXPECT_EQ(doc().undoStack().count(), 0);
    name->setText("Port Wing");
    emit name->editingFinished();
    EXPECT_EQ(doc().model().Sub(1).Name, "Port Wing");
}

TEST_F(SubObjectPanelTest, AffectPivotOnlyLeavesTheMeshInPlace) {
    Document& d = doc();
    d.SelectSubObject(3);
    const auto world = [&](int s, int v) {
        return Add(WorldOffset(d.model(), s),
                   d.model().Sub(s).Vertices[static_cast<std::size_t>(v)].Position);
    };
    const Vector3 corner = world(3, 0);
    const Vector3 radar = WorldOffset(d.model(), 4);
    const auto before = SavedBytes(d.model());
    Find<QCheckBox>(panel_, "chkAffectPivot")->setChecked(true);
    Find<spinControl>(panel_, "txtSOBJOffset_0")->SetValue(0.5f);
    EXPECT_FLOAT_EQ(d.model().Sub(3).Offset.X, 0.5f);
    EXPECT_NEAR(world(3, 0).X, corner.X, 1e-5);
    EXPECT_NEAR(WorldOffset(d.model(), 4).X, radar.X, 1e-5);  // the child stays too
    d.undoStack().undo();
    EXPECT_EQ(SavedBytes(d.model()), before);

    Find<QCheckBox>(panel_, "chkAffectPivot")->setChecked(false);
    Find<spinControl>(panel_, "txtSOBJOffset_0")->SetValue(0.5f);
    EXPECT_NEAR(world(3, 0).X, corner.X + 0.5f, 1e-5);  // the sub-object moved
}

TEST_F(SubObjectPanelTest, OneDragIsOneUndoStep) {
    Document& d = doc();
    d.SelectSubObject(2);
    const auto before = SavedBytes(d.model());
    auto* radius = Find<spinControl>(panel_, "txtSOBJRadius");
    radius->PressButton(+1, 10);
    for (int y = 9; y > 2; --y)
        radius->DragTo(y);
    radius->ReleaseButton();
    EXPECT_GT(d.model().Sub(2).Radius, 0.0f);
    EXPECT_EQ(d.undoStack().count(), 1);
    d.undoStack().undo();
    EXPECT_EQ(SavedBytes(d.model()), before);

    auto* glow = Find<spinControl>(panel_, "txtGlow_1");
    d.SelectSubObject(5);
    glow->SetValue(0.25f);
    glow->SetValue(0.3f);
    emit glow->ChangeDone();
    EXPECT_EQ(d.undoStack().count(), 1);  // the redo of the radius is gone
    EXPECT_EQ(d.model().Sub(5).Properties, "$glow=1,0.3,0.1,1.5");
}

TEST_F(SubObjectPanelTest, TheColorPickerSetsTheGlowColour) {
    doc().SelectSubObject(5);
    prompts_.chosenColor = QColor(255, 0, 51);
    panel_.PickColor();
    ASSERT_EQ(prompts_.colorsOffered.size(), 1u);
    EXPECT_EQ(prompts_.colorsOffered[0], QColor(255, 140, 26));  // 1, 0.55, 0.1
    EXPECT_EQ(doc().model().Sub(5).Properties, "$glow=1,0,0.2,1.5");
    EXPECT_EQ(doc().undoStack().count(), 1);
}

TEST(ModelPanelTest, TheSpecialPointComesBackAfterOffAndOn) {
    test::SampleDocument sample;
    Document& doc = sample.doc;
    doc.model().Special = SpecialPoint{"$engine", "$light", {1, 2, 3}, 0.75f};
    doc.ResetModel(true);
    ModelPanel panel(doc);
    auto* used = Find<QCheckBox>(panel, "chkUseSPCL");
    EXPECT_TRUE(used->isChecked());
    EXPECT_EQ(Find<QLineEdit>(panel, "txtSPCLName")->text(), "$engine");
    const auto before = SavedBytes(doc.model());

    used->click();
    EXPECT_FALSE(doc.model().Special.has_value());
    EXPECT_FALSE(Find<QLineEdit>(panel, "txtSPCLName")->isEnabled());
    used->click();
    ASSERT_TRUE(doc.model().Special.has_value());
    EXPECT_EQ(doc.model().Special->Properties, "$light");
    EXPECT_FLOAT_EQ(doc.model().Special->Position.Y, 2.0f);
    EXPECT_EQ(SavedBytes(doc.model()), before);
    EXPECT_EQ(doc.undoStack().count(), 2);

    Find<spinControl>(panel, "txtSPCLpos_2")->SetValue(-4.0f);
    EXPECT_FLOAT_EQ(doc.model().Special->Position.Z, -4.0f);
    Find<spinControl>(panel, "txtModelRadius")->SetValue(9.0f);
    EXPECT_FLOAT_EQ(doc.model().Header.Radius, 9.0f);
    doc.undoStack().undo();
    doc.undoStack().undo();
    EXPECT_EQ(SavedBytes(doc.model()), before);
}

}  // namespace
}  // namespace mw
