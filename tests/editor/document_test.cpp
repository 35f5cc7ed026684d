// Every command applied, undone and redone: the written bytes and the selection come back
// exactly, and the document says what changed.
#include <gtest/gtest.h>
#include <QSignalSpy>

#include "editor/edit_commands.h"
#include "editor/key_commands.h"
#include "editor/panel_commands.h"
#include "model/batteries.h"
#include "model/key_clipboard.h"
#include "model/properties.h"
#include "support/sample_document.h"

namespace mw {
namespace {

using test::SavedBytes;

struct Selected {
    int sobj;
    int pnt;
    std::string type;
    bool operator==(const Selected&) const = default;
};

Selected Of(const Document& doc) {
    const SelectionState& s = doc.selection();
    return {s.curSOBJ, s.curPNT, s.curPNTtype};
}

struct Case {
    const char* name;
    std::function<void(Document&)> select;
    std::function<QUndoCommand*(Document&)> make;
    Selected after;
};

class CommandTest : public ::testing::TestWithParam<int> {};

SpecialPoint SpecialSpot() {
    return {"$spot", "", {1, 2, 3}, 0.5f};
}

std::vector<Case> Cases() {
    return {
        {"Change Parent",
         [](Document& d) { d.SelectSubObject(4); },
         [](Document& d) { return MakeReparentCommand(d, 4, 1); },
         {4, -1, ""}},
        {"Combine",
         [](Document& d) { d.SelectSubObject(2); },
         [](Document& d) { return MakeCombineCommand(d, 2, 0); },
         {0, -1, ""}},
        {"Combine",  // the turret: its battery lets go of it, and undo gives it back
         [](Document& d) { d.SelectSubObject(3); },
         [](Document& d) { return MakeCombineCommand(d, 3, 0); },
         {0, -1, ""}},
        {"Delete",
         [](Document& d) { d.SelectSubObject(3); },
         [](Document& d) { return MakeDeleteCommand(d); },
         {2, -1, ""}},
        {"Delete",
         [](Document& d) { d.SelectPoint(PointType::GPNT, 1); },
         [](Document& d) { return MakeDeleteCommand(d); },
         {2, -1, ""}},
        {"Convert to Attach Point",
         [](Document& d) { d.SelectPoint(PointType::GPNT, 0); },
         [](Document& d) { return MakeConvertCommand(d, PointType::ATCH); },
         {-1, 1, "ATCH"}},
        {"Convert to Ground Point",
         [](Document& d) { d.SelectSubObject(6); },
         [](Document& d) { return MakeConvertCommand(d, PointType::GRND); },
         {-1, 3, "GRND"}},
        {"Scale Model",
         [](Document& d) { d.SelectSubObject(1); },
         [](Document& d) { return MakeScaleCommand(d, 150.0f, nullptr); },
         {1, -1, ""}},
        {"Recalculate Normals",
         [](Document& d) {
             d.SelectRoot();
             for (Vertex& v : d.model().Sub(0).Vertices)  // stored shorter, as exporters do
                 v.Normal = Scale(v.Normal, 0.5f);
         },
         [](Document& d) { return MakeRecalcNormalsCommand(d); },
         {-1, -1, ""}},
        {"Rename",
         [](Document& d) { d.SelectSubObject(5); },
         [](Document& d) { return MakeRenameCommand(d, 5, "Thruster Main"); },
         {5, -1, ""}},
        {"Move Point",
         [](Document& d) { d.SelectPoint(PointType::GRND, 1); },
         [](Document& d) { return MakePointParentCommand(d, PointType::GRND, 1, 0); },
         {-1, 1, "GRND"}},
        // The panels' edits.
        {"Model Radius",
         [](Document& d) { d.SelectRoot(); },
         [](Document& d) { return MakeModelRadiusCommand(d, 7.25f); },
         {-1, -1, ""}},
        {"Use Special Point",
         [](Document& d) { d.model().SpecialParked = SpecialSpot(); },
         [](Document& d) { return MakeSpecialUsedCommand(d, true); },
         {-1, -1, ""}},
        {"Drop Special Point",
         [](Document& d) { d.model().Special = SpecialSpot(); },
         [](Document& d) { return MakeSpecialUsedCommand(d, false); },
         {-1, -1, ""}},
        {"Special Point",
         [](Document& d) { d.model().Special = SpecialSpot(); },
         [](Document& d) {
             return MakeSpecialCommand(d, EditField::SpecialPosition, [](SpecialPoint& p) {
                 p.Position = {0, 2, -1};
             });
         },
         {-1, -1, ""}},
        {"Sub-Model Radius",
         [](Document& d) { d.SelectSubObject(2); },
         [](Document& d) { return MakeSubObjectRadiusCommand(d, 2, 4.5f); },
         {2, -1, ""}},
        {"Move Sub-Model",
         [](Document& d) { d.SelectSubObject(2); },
         [](Document& d) {
             return MakeOffsetCommand(d, 2, {3.5f, -0.2f, -1}, false);
         },
         {2, -1, ""}},
        {"Move Pivot",
         [](Document& d) { d.SelectSubObject(3); },
         [](Document& d) {
             return MakeOffsetCommand(d, 3, {0, 1.5f, 0.25f}, true);
         },
         {3, -1, ""}},
        {"Sub-Model Property",
         [](Document& d) { d.SelectSubObject(3); },
         [](Document& d) {  // the turret becomes a rotator and leaves its battery
             PropertyValues values;
             values.RotatePeriod = 4.0f;
             return MakeStorePropertyCommand(d, 3, kPropRotate, values);
         },
         {3, -1, ""}},
        {"Move Point",
         [](Document& d) { d.SelectPoint(PointType::GPNT, 1); },
         [](Document& d) {
             return MakePointLocationCommand(d, PointType::GPNT, 1, {1, 0.5f, 1});
         },
         {-1, 1, "GPNT"}},
        {"Point Direction",
         [](Document& d) { d.SelectPoint(PointType::NATH, 0); },
         [](Document& d) {
             return MakePointDirectionCommand(d, PointType::NATH, 0, {0, 1, 0});
         },
         {-1, 0, "NATH"}},
        {"Add Battery",
         [](Document& d) { d.SelectRoot(); },
         [](Document& d) { return MakeAddBatteryCommand(d); },
         {-1, -1, ""}},
        {"Delete Battery",
         [](Document& d) { d.SelectRoot(); },
         [](Document& d) { return MakeDeleteBatteryCommand(d, 0); },
         {-1, -1, ""}},
        {"Add to Battery",
         [](Document& d) { d.SelectRoot(); },
         [](Document& d) { return MakeBatteryEntryCommand(d, 0, GunPointEntryText(2), true); },
         {-1, -1, ""}},
        {"Remove from Battery",
         [](Document& d) { d.SelectRoot(); },
         [](Document& d) {
             return MakeBatteryEntryCommand(d, 1, AssignedBatteryEntries(d.model(), 1)[0], false);
         },
         {-1, -1, ""}},
        // The key edits: the hatch (6) has position keys, the turret (3) rotation keys.
        {"Add Positional Key",
         [](Document& d) { d.SelectSubObject(6); },
         [](Document& d) { return MakeKeyPresenceCommand(d, 6, 5, KeyKind::Position, true); },
         {6, -1, ""}},
        {"Delete Rotational Key",
         [](Document& d) { d.SelectSubObject(3); },
         [](Document& d) { return MakeKeyPresenceCommand(d, 3, 10, KeyKind::Rotation, false); },
         {3, -1, ""}},
        {"Key Position",
         [](Document& d) { d.SelectSubObject(6); },
         [](Document& d) {
             return MakeKeyPositionCommand(d, 6, 10, {0.5f, 1.25f, 2});
         },
         {6, -1, ""}},
        {"Key Angle",
         [](Document& d) { d.SelectSubObject(3); },
         [](Document& d) { return MakeKeyAngleCommand(d, 3, 10, 12345); },
         {3, -1, ""}},
        {"Axis of Rotation",
         [](Document& d) { d.SelectSubObject(3); },
         [](Document& d) {
             return MakeKeyAxisCommand(d, 3, 10, {0.6f, 0.8f, 0});
         },
         {3, -1, ""}},
        {"Mirror Y",
         [](Document& d) { d.SelectSubObject(3); },
         [](Document& d) { return MakeMirrorAxisCommand(d, 3, 10, 1); },
         {3, -1, ""}},
        {"Move Key",
         [](Document& d) { d.SelectSubObject(6); },
         [](Document& d) { return MakeMoveKeysCommand(d, 6, 10, 13, KeyFilter::All); },
         {6, -1, ""}},
        {"Cut Key",
         [](Document& d) { d.SelectSubObject(6); },
         [](Document& d) { return MakeDeleteKeysCommand(d, "Cut Key", 6, 10, 10, KeyFilter::All); },
         {6, -1, ""}},
        {"Paste Key",
         [](Document& d) { d.SelectSubObject(6); },
         [](Document& d) {
             static KeyClipboard clip;
             CopyKey(d.model(), 3, 10, KeyFilter::All, false, clip);
             return MakePasteKeyCommand(d, 6, 7, KeyFilter::All, clip);
         },
         {6, -1, ""}},
        {"Paste All Keys",
         [](Document& d) { d.SelectSubObject(4); },
         [](Document& d) {
             static KeyClipboard clip;
             CopyAllKeys(d.model(), 6, 0, 20, KeyFilter::All, false, clip);
             return MakePasteAllKeysCommand(d, 4, 30, KeyFilter::All, clip);
         },
         {4, -1, ""}},
        {"Current Sub to Start",
         [](Document& d) { d.SelectSubObject(4); },
         [](Document& d) { return MakeToStartCommand(d, 4, 5); },
         {4, -1, ""}},
        {"All Subs to Start",
         [](Document& d) { d.SelectRoot(); },
         [](Document& d) { return MakeToStartCommand(d, -1, 5); },
         {-1, -1, ""}},
    };
}

TEST_P(CommandTest, UndoAndRedoRestoreBytesAndSelection) {
    const Case c = Cases()[static_cast<std::size_t>(GetParam())];
    test::SampleDocument sample;
    Document& doc = sample.doc;
    c.select(doc);
    const Selected selectedBefore = Of(doc);
    const auto before = SavedBytes(doc.model());
    EXPECT_FALSE(doc.isModified());

    QSignalSpy cleanSpy(&doc, &Document::cleanChanged);
    ASSERT_TRUE(doc.Apply(c.make(doc))) << c.name;
    EXPECT_TRUE(doc.modelReady());
    const auto after = SavedBytes(doc.model());
    EXPECT_NE(after, before);
    EXPECT_EQ(Of(doc), c.after);
    EXPECT_TRUE(doc.isModified());
    EXPECT_EQ(cleanSpy.count(), 1);
    EXPECT_EQ(doc.undoStack().undoText(), c.name);

    doc.undoStack().undo();
    EXPECT_EQ(SavedBytes(doc.model()), before) << c.name;
    EXPECT_EQ(Of(doc), selectedBefore);
    EXPECT_FALSE(doc.isModified());

    doc.undoStack().redo();
    EXPECT_EQ(SavedBytes(doc.model()), after) << c.name;
    EXPECT_EQ(Of(doc), c.after);

    // Undo twice over, to be sure the snapshot survives a redo.
    doc.undoStack().undo();
    EXPECT_EQ(SavedBytes(doc.model()), before) << c.name;
}

INSTANTIATE_TEST_SUITE_P(EveryCommand, CommandTest,
                         ::testing::Range(0, static_cast<int>(Cases().size())));

TEST(DocumentTest, EditsSayWhatChanged) {
    test::SampleDocument sample;
    Document& doc = sample.doc;
    QSignalSpy structure(&doc, &Document::structureChanged);
    QSignalSpy geometry(&doc, &Document::geometryChanged);
    QSignalSpy points(&doc, &Document::pointsChanged);
    QSignalSpy selection(&doc, &Document::selectionChanged);

    doc.SelectSubObject(4);
    EXPECT_EQ(selection.count(), 1);
    doc.Apply(MakeReparentCommand(doc, 4, 1));
    EXPECT_EQ(structure.count(), 1);
    EXPECT_EQ(geometry.count(), 0);  // a reparent leaves the meshes alone
    doc.undoStack().undo();
    EXPECT_EQ(structure.count(), 2);

    doc.SelectPoint(PointType::GPNT, 0);
    doc.Apply(MakeDeleteCommand(doc));
    EXPECT_EQ(points.count(), 1);
    EXPECT_EQ(structure.count(), 2);

    doc.Apply(MakeRecalcNormalsCommand(doc));
    EXPECT_EQ(geometry.count(), 1);
}

TEST(DocumentTest, RefusedEditsPushNothing) {
    test::SampleDocument sample;
    Document& doc = sample.doc;
    const auto before = SavedBytes(doc.model());

    doc.SelectSubObject(0);  // the only top-level sub-object
    EXPECT_FALSE(doc.Apply(MakeDeleteCommand(doc)));
    doc.SelectSubObject(3);
    EXPECT_FALSE(doc.Apply(MakeReparentCommand(doc, 3, 4)));  // onto its own child
    EXPECT_FALSE(doc.Apply(MakeReparentCommand(doc, 3, 0)));  // already its parent
    ScaleResult result = ScaleResult::Done;
    EXPECT_FALSE(doc.Apply(MakeScaleCommand(doc, 1.0f, &result)));
    EXPECT_EQ(result, ScaleResult::TooSmall);
    EXPECT_FALSE(doc.Apply(MakeScaleCommand(doc, 1e7f, &result)));
    EXPECT_EQ(result, ScaleResult::TooLarge);
    EXPECT_FALSE(doc.Apply(MakeRenameCommand(doc, 3, "turret")));
    doc.SelectPoint(PointType::GPNT, 0);
    EXPECT_FALSE(doc.Apply(MakeConvertCommand(doc, PointType::GPNT)));
    // A point index that names no point (found by the edit fuzzer: it read before the list).
    doc.SelectPoint(PointType::GPNT, -3);
    EXPECT_FALSE(doc.Apply(MakeDeleteCommand(doc)));
    EXPECT_FALSE(doc.Apply(MakeConvertCommand(doc, PointType::ATCH)));

    EXPECT_EQ(doc.undoStack().count(), 0);
    EXPECT_FALSE(doc.isModified());
    EXPECT_TRUE(doc.modelReady());
    EXPECT_EQ(SavedBytes(doc.model()), before);
}

TEST(DocumentTest, EditsOfOneSessionMergeIntoOneStep) {
    test::SampleDocument sample;
    Document& doc = sample.doc;
    doc.Apply(MakeRenameCommand(doc, 1, "w"));
    doc.Apply(MakeRenameCommand(doc, 1, "wi"));
    doc.Apply(MakeRenameCommand(doc, 1, "win"));
    EXPECT_EQ(doc.undoStack().count(), 1);
    doc.EndEditSession();
    doc.Apply(MakeRenameCommand(doc, 1, "wing"));
    EXPECT_EQ(doc.undoStack().count(), 2);
    doc.undoStack().undo();
    EXPECT_EQ(doc.model().Sub(1).Name, "win");
    doc.undoStack().undo();
    EXPECT_EQ(doc.model().Sub(1).Name, "wing_left");

    // A session that ends where it began leaves nothing to undo.
    doc.EndEditSession();
    doc.Apply(MakeRenameCommand(doc, 2, "x"));
    doc.Apply(MakeRenameCommand(doc, 2, "wing_right"));
    EXPECT_EQ(doc.undoStack().index(), 0);
}

TEST(DocumentTest, SavingMarksCleanAndALoadForgetsTheHistory) {
    test::SampleDocument sample;
    Document& doc = sample.doc;
    doc.SelectSubObject(4);
    doc.Apply(MakeReparentCommand(doc, 4, 1));
    EXPECT_TRUE(doc.isModified());
    doc.MarkSaved();
    EXPECT_FALSE(doc.isModified());
    doc.undoStack().undo();
    EXPECT_TRUE(doc.isModified());  // back before the save

    QSignalSpy reset(&doc, &Document::modelReset);
    doc.ResetModel(true);
    EXPECT_EQ(reset.count(), 1);
    EXPECT_EQ(doc.undoStack().count(), 0);
    EXPECT_EQ(doc.selection().curSOBJ, -1);
    EXPECT_TRUE(doc.modelReady());
}

}  // namespace
}  // namespace mw
