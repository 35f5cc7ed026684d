// The animation panel, the strip and the key menu in the editor window on the sample ship.
#include <gtest/gtest.h>
#include <QAccessible>
#include <QTabBar>

#include "editor/animation_strip.h"
#include "editor/key_menu.h"
#include "editor/panels/panel_host.h"
#include "editor/widgets/key_control.h"
#include "editor_window.h"

namespace mw {
namespace {

class AnimationWindowTest : public EditorTest {
  protected:
    void ShowTab(const QString& tab) {
        QTabBar& tabs = window_->panels().tabs();
        for (int i = 0; i < tabs.count(); ++i) {
            if (tabs.tabText(i) == tab) {
                tabs.setCurrentIndex(i);
                emit tabs.tabBarClicked(i);
            }
        }
        QApplication::processEvents();
    }
};

TEST_F(AnimationWindowTest, Screenshot) {
    if (ScreenshotPath("x").isEmpty()) GTEST_SKIP() << "set MW_SCREENSHOT_DIR to take them";
    window_->resize(1100, 800);
    ASSERT_TRUE(window_->LoadModel(kShip));
    ShowTab("Animation");
    doc().SelectSubObject(3);
    doc().display().ViewTrajectories = true;
    doc().DisplayChanged();
    doc().GoToFrame(10.0f);
    window_->animation().timeline().SelectKey(10);
    QTest::qWait(100);
    EXPECT_TRUE(WindowImage().save(ScreenshotPath("editor-animation.png")));
}

}  // namespace
}  // namespace mw
