// The left column's tab strip over a document: a tab shows its panel however it becomes
// current, and a panel taller than the area scrolls.
#include "editor/panels/panel_host.h"

#include <gtest/gtest.h>
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QTest>

#include "support/sample_document.h"

namespace mw {
namespace {

class PanelHostTest : public ::testing::Test {
  protected:
    PanelHostTest() : host_(sample_.doc, QPixmap()) {
        for (const char* key : {"Model", "SubModel", "Points", "Batteries", "Textures"}) {
            auto* frame = new QWidget;
            frame->setObjectName(key);
            host_.AddPanel(key, frame);
        }
        // The animation panel stands for one taller than the area.
        auto* tall = new QWidget;
        tall->setMinimumHeight(2000);
        host_.AddPanel("Animation", tall);
        host_.resize(320, 600);
        sample_.doc.ResetModel(true);
        host_.show();
        QApplication::setActiveWindow(&host_);
        EXPECT_TRUE(QTest::qWaitForWindowActive(&host_));
    }
    QTabBar& tabs() { return host_.tabs(); }

    test::SampleDocument sample_;
    PanelHost host_;
};

TEST_F(PanelHostTest, EveryWayOfChangingTheTabShowsItsPanel) {
    EXPECT_EQ(host_.shownPanel(), "Model");
    // Arrow keys on the focused tab bar.
    tabs().setFocus();
    QTest::keyClick(&tabs(), Qt::Key_Right);
    EXPECT_EQ(host_.shownPanel(), "Textures");
    // Ctrl+Tab and Ctrl+Shift+Tab step through the tabs, round the end.
    QTest::keyClick(&tabs(), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(host_.shownPanel(), "Batteries");
    QTest::keyClick(&tabs(), Qt::Key_Tab, Qt::ControlModifier);
    QTest::keyClick(&tabs(), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(tabs().currentIndex(), 0);
    EXPECT_EQ(host_.shownPanel(), "Model");
    QTest::keyClick(&tabs(), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(host_.shownPanel(), "Animation");
    // Through assistive tools: press each tab's accessible button.
    QAccessibleInterface* bar = QAccessible::queryAccessibleInterface(&tabs());
    ASSERT_NE(bar, nullptr);
    const QStringList expected{"Model", "Textures", "Batteries", "Animation"};
    for (int i = 0; i < bar->childCount(); ++i) {
        QAccessibleInterface* tab = bar->child(i);
        if (tab->role() != QAccessible::PageTab) continue;
        ASSERT_NE(tab->actionInterface(), nullptr);
        tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        EXPECT_EQ(host_.shownPanel(), expected[tabs().currentIndex()]) << i;
    }
    // The selection decides the Properties tab's panel.
    tabs().setCurrentIndex(0);
    sample_.doc.SelectPoint(PointType::GPNT, 0);
    EXPECT_EQ(host_.shownPanel(), "Points");
    sample_.doc.SelectSubObject(2);
    EXPECT_EQ(host_.shownPanel(), "SubModel");
}

TEST_F(PanelHostTest, AccessKeysChooseTheirTabs) {
    QTest::keyClick(&host_, Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(host_.shownPanel(), "Animation");
    QTest::keyClick(&host_, Qt::Key_B, Qt::AltModifier);
    EXPECT_EQ(host_.shownPanel(), "Batteries");
}

TEST_F(PanelHostTest, ATallPanelScrollsAndAModelLessColumnShowsTheLogo) {
    tabs().setCurrentIndex(3);
    QApplication::processEvents();
    auto* area = host_.findChild<QScrollArea*>("picTabMain");
    ASSERT_NE(area, nullptr);
    EXPECT_GT(area->verticalScrollBar()->maximum(), 0);
    tabs().setCurrentIndex(1);
    QApplication::processEvents();
    EXPECT_EQ(area->verticalScrollBar()->maximum(), 0);

    sample_.doc.model() = ModelData{};
    sample_.doc.ResetModel(false);
    EXPECT_EQ(host_.shownPanel(), "Main");
    EXPECT_FALSE(tabs().isEnabled());
    EXPECT_EQ(tabs().currentIndex(), 0);
}

}  // namespace
}  // namespace mw
