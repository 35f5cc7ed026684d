// The model tree over a document, driven by the mouse as a user drags nodes.
#include "editor/tree/model_tree.h"

#include <gtest/gtest.h>
#include <QTest>

#include "editor/edit_commands.h"
#include "editor/tree/tree_control.h"
#include "support/oof_bytes.h"
#include "support/sample_document.h"
#include "support/scripted_prompts.h"

namespace mw {
namespace {

class ModelTreeTest : public ::testing::Test {
  protected:
    ModelTreeTest() {
        control_.SetPrompts(&prompts_);
        control_.resize(300, 600);
        control_.show();
    }

    QPoint At(const QString& key) {
        QTreeWidgetItem* item = control_.FindNode(key);
        EXPECT_NE(item, nullptr) << key.toStdString();
        return control_.visualItemRect(item).center();
    }

    void Drag(const QString& from, const QString& to, Qt::KeyboardModifiers modifiers = {}) {
        QWidget* view = control_.viewport();
        QTest::mousePress(view, Qt::LeftButton, {}, At(from));
        QTest::mouseMove(view, At(from) + QPoint(0, 12));
        QTest::mouseMove(view, At(to));
        QTest::mouseRelease(view, Qt::LeftButton, modifiers, At(to));
    }

    // Every point node sits under the sub-object that owns the point.
    void ExpectPointNodesMatchTheModel() {
        const ModelData& m = sample_.doc.model();
        int count = 0;
        for (QTreeWidgetItemIterator it(&control_); *it != nullptr; ++it) {
            const QString key = treeControl::KeyOf(*it);
            if (!key.endsWith('P')) continue;
            const auto type = PointTypeFromTag(key.mid(key.size() - 5, 4).toStdString());
            ASSERT_TRUE(type);
            const int i = KeyNumber(key);
            ASSERT_LT(i, static_cast<int>(m.Points(*type).size())) << key.toStdString();
            EXPECT_EQ(KeyNumber(treeControl::KeyOf((*it)->parent())),
                      m.Points(*type)[static_cast<std::size_t>(i)].Parent);
            ++count;
        }
        std::size_t total = 0;
        for (PointType t : kPointTypes)
            total += m.Points(t).size();
        EXPECT_EQ(static_cast<std::size_t>(count), total);
    }

    test::SampleDocument sample_;
    treeControl control_;
    ModelTree tree_{control_, sample_.doc};
    test::ScriptedPrompts prompts_;
};

TEST_F(ModelTreeTest, ShowsTheModelWithKeysTextsAndPoints) {
    ASSERT_NE(control_.FindNode("-1M"), nullptr);
    EXPECT_EQ(control_.FindNode("-1M")->text(0), "ship.oof");
    EXPECT_EQ(control_.FindNode("4S")->parent(), control_.FindNode("3S"));
    EXPECT_EQ(control_.FindNode("2GPNTP")->parent(), control_.FindNode("3S"));
    EXPECT_EQ(control_.FindNode("0GRNDP")->text(0), "GRND0");
    EXPECT_TRUE(control_.FindNode("0S")->isExpanded());
    ExpectPointNodesMatchTheModel();

    sample_.doc.model().Sub(6).Name.clear();
    emit sample_.doc.structureChanged();
    EXPECT_EQ(control_.FindNode("6S")->text(0), "Unnamed6");
}

TEST_F(ModelTreeTest, ClickingANodeSelectsAndDropsReparent) {
    Document& doc = sample_.doc;
    QTest::mouseClick(control_.viewport(), Qt::LeftButton, {}, At("2GPNTP"));
    EXPECT_EQ(doc.selection().curPNT, 2);
    EXPECT_EQ(doc.selection().curPNTtype, "GPNT");

    Drag("4S", "1S");  // the radar onto the left wing
    EXPECT_EQ(doc.model().Sub(4).Parent, 1);
    EXPECT_EQ(control_.FindNode("4S")->parent(), control_.FindNode("1S"));
    EXPECT_EQ(doc.selection().curSOBJ, 4);
    EXPECT_EQ(control_.selectedKey(), "4S");

    Drag("4S", "-1M");  // onto the root: top level
    EXPECT_EQ(doc.model().Sub(4).Parent, -1);
    doc.undoStack().undo();
    doc.undoStack().undo();
    EXPECT_EQ(control_.FindNode("4S")->parent(), control_.FindNode("3S"));
    // The selection is what it was before the first drop: the gun point.
    EXPECT_EQ(doc.selection().curPNT, 2);
    EXPECT_EQ(control_.selectedKey(), "2GPNTP");
}

TEST_F(ModelTreeTest, ADropOntoADescendantIsRefused) {
    const auto before = test::SavedBytes(sample_.doc.model());
    Drag("0S", "4S");  // the hull onto its grandchild
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_EQ(prompts_.messages[0].text, "You can not make a Sub-Object a child of its children");
    Drag("3S", "4S", Qt::ShiftModifier);
    ASSERT_EQ(prompts_.messages.size(), 2u);
    EXPECT_EQ(prompts_.messages[1].text, "You can not combine a Parent Sub-Object to it's childen");
    EXPECT_EQ(test::SavedBytes(sample_.doc.model()), before);
    EXPECT_EQ(sample_.doc.undoStack().count(), 0);
}

TEST_F(ModelTreeTest, OnlyShiftAloneCombines) {
    Document& doc = sample_.doc;
    Drag("6S", "5S", Qt::ShiftModifier | Qt::ControlModifier);  // not a combine: a reparent
    EXPECT_EQ(doc.model().Sub(6).Parent, 5);
    EXPECT_EQ(doc.model().SubObjectCount(), 7);
    Drag("2S", "1S", Qt::ShiftModifier);
    EXPECT_EQ(doc.model().SubObjectCount(), 6);
    EXPECT_EQ(control_.FindNode("2S"), nullptr);
    EXPECT_EQ(doc.selection().curSOBJ, 1);
    ExpectPointNodesMatchTheModel();
    EXPECT_EQ(control_.FindNode("1GPNTP")->parent(), control_.FindNode("1S"));
    // Shift-dropping a point does nothing.
    Drag("0GPNTP", "3S", Qt::ShiftModifier);
    EXPECT_EQ(doc.model().GunPoints[0].Parent, 1);
}

TEST_F(ModelTreeTest, APointDroppedOnAPointMovesToItsSubObject) {
    Document& doc = sample_.doc;
    Drag("0GPNTP", "2GPNTP");
    EXPECT_EQ(doc.model().GunPoints[0].Parent, 3);
    EXPECT_EQ(control_.FindNode("0GPNTP")->parent(), control_.FindNode("3S"));
    EXPECT_EQ(doc.selection().curPNT, 0);
    Drag("0GPNTP", "-1M");  // a point dropped on the root stays
    EXPECT_EQ(doc.model().GunPoints[0].Parent, 3);
    EXPECT_EQ(doc.undoStack().count(), 1);
}

TEST_F(ModelTreeTest, PointKeysFollowEveryStructuralEditAndItsUndo) {
    Document& doc = sample_.doc;
    doc.SelectPoint(PointType::GPNT, 0);
    doc.Apply(MakeDeleteCommand(doc));
    ExpectPointNodesMatchTheModel();
    EXPECT_EQ(control_.FindNode("2GPNTP"), nullptr);
    EXPECT_EQ(control_.selectedKey(), "1S");  // the deleted point's sub-object
    doc.SelectSubObject(3);
    doc.Apply(MakeDeleteCommand(doc));
    ExpectPointNodesMatchTheModel();
    EXPECT_EQ(control_.selectedKey(), "2S");
    doc.undoStack().undo();
    ExpectPointNodesMatchTheModel();
    doc.undoStack().undo();
    ExpectPointNodesMatchTheModel();
    EXPECT_NE(control_.FindNode("2GPNTP"), nullptr);
}

TEST_F(ModelTreeTest, ConvertingSelectsTheNewPointsNode) {
    Document& doc = sample_.doc;
    ModelData& m = doc.model();
    const ModelPoint gun = m.GunPoints[1];
    doc.SelectPoint(PointType::GPNT, 1);
    ASSERT_TRUE(doc.Apply(MakeConvertCommand(doc, PointType::ATCH)));
    EXPECT_EQ(m.GunPoints.size(), 2u);
    ASSERT_EQ(m.AttachPoints.size(), 2u);
    EXPECT_EQ(m.AttachPoints[1].Position, gun.Position);
    EXPECT_EQ(m.AttachPoints[1].Parent, gun.Parent);
    EXPECT_EQ(control_.selectedKey(), "1ATCHP");
    ExpectPointNodesMatchTheModel();

    // The hatch (6), child of the hull, becomes a ground point of the hull at its box centre
    // in the hull's frame, pointing along its first face's normal made unit length.
    const SubObject hatch = m.Sub(6);
    doc.SelectSubObject(6);
    ASSERT_TRUE(doc.Apply(MakeConvertCommand(doc, PointType::GRND)));
    ASSERT_EQ(m.GroundPoints.size(), 4u);
    const ModelPoint& made = m.GroundPoints[3];
    EXPECT_EQ(made.Parent, 0);
    EXPECT_FLOAT_EQ(made.Position.X, hatch.Offset.X + (hatch.BoxMin.X + hatch.BoxMax.X) / 2);
    EXPECT_FLOAT_EQ(made.Position.Y, hatch.Offset.Y + (hatch.BoxMin.Y + hatch.BoxMax.Y) / 2);
    EXPECT_FLOAT_EQ(made.Position.Z, hatch.Offset.Z + (hatch.BoxMin.Z + hatch.BoxMax.Z) / 2);
    EXPECT_EQ(made.Normal, Normalize(hatch.Faces.front().Normal));
    EXPECT_EQ(control_.selectedKey(), "3GRNDP");
    EXPECT_EQ(control_.FindNode("6S"), nullptr);
    ExpectPointNodesMatchTheModel();
}

TEST_F(ModelTreeTest, DeletingTheFirstSlotSelectsTheRoot) {
    Document& doc = sample_.doc;
    doc.oof().data() = test::ModelWithParents({-1, -1});
    doc.ResetModel(true);
    doc.SelectSubObject(0);
    ASSERT_TRUE(doc.Apply(MakeDeleteCommand(doc)));
    EXPECT_EQ(control_.selectedKey(), "-1M");
    EXPECT_EQ(doc.selection().curSOBJ, -1);
}

TEST_F(ModelTreeTest, DraggingExpandsAHeldNodeAndEscapeCancels) {
    control_.collapseItem(control_.FindNode("3S"));
    QWidget* view = control_.viewport();
    QTest::mousePress(view, Qt::LeftButton, {}, At("5S"));
    QTest::mouseMove(view, At("5S") + QPoint(0, -12));
    QTest::mouseMove(view, At("3S"));
    ASSERT_TRUE(control_.dragging());
    ASSERT_NE(control_.dragImage(), nullptr);
    EXPECT_EQ(sample_.doc.selection().hiliteSOBJ2, 3);  // the drop target is highlighted
    control_.AutoExpandTick();                          // 500 ms later
    EXPECT_TRUE(control_.FindNode("3S")->isExpanded());
    QTest::keyClick(&control_, Qt::Key_Escape);
    EXPECT_FALSE(control_.dragging());
    EXPECT_EQ(control_.dragImage(), nullptr);
    QTest::mouseRelease(view, Qt::LeftButton, {}, At("3S"));
    EXPECT_EQ(sample_.doc.model().Sub(5).Parent, 0);
}

TEST_F(ModelTreeTest, RenamingTrimsAndAnEmptyLabelCancels) {
    Document& doc = sample_.doc;
    doc.SelectSubObject(5);
    QTreeWidgetItem* node = control_.FindNode("5S");
    node->setText(0, "  Main Thruster ");
    EXPECT_EQ(doc.model().Sub(5).Name, "Main Thruster");
    EXPECT_EQ(node->text(0), "Main Thruster");
    node->setText(0, "   ");
    EXPECT_EQ(node->text(0), "Main Thruster");
    EXPECT_EQ(doc.undoStack().count(), 1);
    doc.undoStack().undo();
    EXPECT_EQ(node->text(0), "thruster");
}

}  // namespace
}  // namespace mw
