// Tools > Game Object... and Tools > Test in Game in the window, over the sample ship and a
// mission made here; the screenshots of the manual are taken here.
#include <QDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTreeWidget>
#include <fstream>

#include "editor/dialogs/game_object_dialog.h"
#include "editor/dialogs/game_object_page.h"
#include "editor/dialogs/game_test_window.h"
#include "gamedata/gam_fields.h"
#include "gamedata/hog_writer.h"
#include "gamedata_writers.h"
#include "model/file_io.h"
#include "support/editor_window.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

class GameObjectWindowTest : public EditorTest {
  protected:
    GameObjectWindowTest() {
        GamObjectPage robot = ObjectPage("Sample Drone", {"ship.oof", "", ""}, 0);
        robot.IdleFrom = 0;
        robot.IdleTo = 30;  // past the sample's last key (frame 20)
        robot.FirstWeapon = "Laser";
        robot.FirstMask = 0x03;
        mission_ = dir_ / "sample.mn3";
        WriteFileReplacing(mission_, WriteHOG({{"sample.gam", GamWriter().object(robot).bytes()},
                                               {"ship.oof", *ReadFileBytes(kShip)}}));
        settings_.MN3GAMPath = mission_.string();
    }
    test::TempDir dir_{"game-object-window"};
    fs::path mission_;
};

TEST_F(GameObjectWindowTest, TheDialogFromTheToolsMenu) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    bool ran = false;
    window_->SetGameObjectRunner([&](GameObjectDialog& dialog) {
        ran = true;
        dialog.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        ASSERT_GE(dialog.pageList().topLevelItemCount(), 2);
        EXPECT_EQ(dialog.pageList().topLevelItem(0)->text(1), "Sample Drone");
        int idle = 0;
        while (idle < kAnimStates && std::string_view(kAnimStateKeys[idle]) != "idle")
            ++idle;
        EXPECT_TRUE(dialog.page().AnimationMarked(idle));
        // Every control the keyboard reaches is named for assistive tools.
        for (QWidget* w : dialog.findChildren<QWidget*>()) {
            if (w->isVisible() && w->focusPolicy() != Qt::NoFocus && w->isEnabled())
                ExpectAccessibleName(w);
        }
        QTest::qWait(100);
        if (const QString shot = ScreenshotPath("editor-game-object.png"); !shot.isEmpty()) {
            EXPECT_TRUE(dialog.grab().save(shot));
        }
        dialog.reject();
    });
    Action("mnuToolsGameObject")->trigger();
    EXPECT_TRUE(ran);
}

TEST_F(GameObjectWindowTest, TestInGameFromTheToolsMenu) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    const fs::path program = dir_ / "Descent3";
    std::ofstream(program) << "#!/bin/sh\n"
                              "echo 'Welcome to Descent 3 v1.5.500'\n"
                              "echo 'Loading mission sample.mn3, level 1'\n"
                              "echo \"[ERROR] bm_AllocLoadFileBitmap: Can't open file named "
                              "drone_eye.ogf.\"\n"
                              "echo \"[ERROR] Couldn't load file 'drone_lo.oof' in "
                              "AssignGenericPage...\"\n"
                              "echo 'Level 1 started'\n";
    fs::permissions(program, fs::perms::owner_exec, fs::perm_options::add);
    settings_.GameProgram = program.string();
    window_->SetTestFolder(QString::fromStdString((dir_ / "play").string()));
    Action("mnuToolsTestInGame")->trigger();
    EXPECT_TRUE(prompts_.questions.isEmpty());  // the mission's model is the saved one
    GameTestWindow* test = window_->testWindow();
    ASSERT_NE(test, nullptr);
    QSignalSpy ended(test, &GameTestWindow::gameEnded);
    ASSERT_TRUE(ended.count() > 0 || ended.wait(10000));
    EXPECT_EQ(test->problems().topLevelItemCount(), 2);
    for (QWidget* w : test->findChildren<QWidget*>()) {
        if (w->isVisible() && w->focusPolicy() != Qt::NoFocus && w->isEnabled())
            ExpectAccessibleName(w);
    }
    QTest::qWait(100);
    if (const QString shot = ScreenshotPath("editor-test-in-game.png"); !shot.isEmpty()) {
        EXPECT_TRUE(test->grab().save(shot));
    }
    test->close();
}

}  // namespace
}  // namespace mw
