// The Check Model window over a document.
#include "editor/dialogs/check_dialog.h"

#include <gtest/gtest.h>
#include <QLabel>
#include <QTreeWidget>

#include "editor/panel_commands.h"
#include "support/sample_document.h"

namespace mw {
namespace {

TEST(CheckDialogTest, ListsFindingsSelectsTheirPartsAndFollowsEdits) {
    test::SampleDocument sample;
    Document& doc = sample.doc;
    ModelData& m = doc.model();
    m.AttachPoints.push_back(m.AttachPoints[0]);
    m.Sub(3).Rot.Keys.clear();
    doc.ResetModel(true);
    CheckDialog dialog(doc, DocumentCheck(doc, nullptr, nullptr));
    dialog.show();
    auto* list = dialog.findChild<QTreeWidget*>("lstFindings");
    ASSERT_EQ(list->topLevelItemCount(), 2);
    EXPECT_EQ(list->topLevelItem(0)->text(0), "warning");
    EXPECT_EQ(list->topLevelItem(0)->text(1), "turret");
    EXPECT_EQ(list->topLevelItem(0)->text(2), "no-rotation-keys");
    EXPECT_EQ(list->topLevelItem(1)->text(1), "NATH 0");

    emit list->itemDoubleClicked(list->topLevelItem(0), 0);
    EXPECT_EQ(doc.selection().curSOBJ, 3);
    emit list->itemDoubleClicked(list->topLevelItem(1), 0);
    EXPECT_EQ(doc.selection().curPNTtype, "NATH");
    EXPECT_EQ(doc.selection().curPNT, 0);

    // An edit that breaks a limit shows at once; undoing it takes it away again.
    PropertyValues values;
    values.Fov = {400, 3, 1};
    ASSERT_TRUE(doc.Apply(MakeStorePropertyCommand(doc, 3, kPropFov, values)));
    ASSERT_EQ(list->topLevelItemCount(), 3);
    EXPECT_EQ(list->topLevelItem(0)->text(0), "error");
    EXPECT_EQ(list->topLevelItem(0)->text(2), "turret-values");
    EXPECT_TRUE(dialog.findChild<QLabel*>("lblCheckSummary")->text().startsWith("1 error(s)"));
    values.GlowColor = {1, 1, 1};
    ASSERT_TRUE(doc.Apply(MakeStorePropertyCommand(doc, 6, kPropGlow, values)));
    ASSERT_EQ(list->topLevelItemCount(), 4);
    EXPECT_EQ(list->topLevelItem(2)->text(2), "single-face-required");
    doc.undoStack().undo();
    doc.undoStack().undo();
    EXPECT_EQ(list->topLevelItemCount(), 2);
}

TEST(CheckDialogTest, ACleanModelSaysSo) {
    test::SampleDocument sample;
    CheckDialog dialog(sample.doc, DocumentCheck(sample.doc, nullptr, nullptr));
    EXPECT_EQ(dialog.findChild<QTreeWidget*>("lstFindings")->topLevelItemCount(), 0);
    EXPECT_EQ(dialog.findChild<QLabel*>("lblCheckSummary")->text(),
              "No findings: the game takes this model as it is.");
}

}  // namespace
}  // namespace mw
