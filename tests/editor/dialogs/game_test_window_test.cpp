// Test in Game with a stand-in game program written here: what is asked before it starts,
// the options and folder it gets, its output shown while it runs, the failure its output
// names listed when it ends, and Stop.
#include "editor/dialogs/game_test_window.h"

#include <gtest/gtest.h>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>
#include <fstream>
#include <sstream>

#include "editor/file_commands.h"
#include "editor/game_test.h"
#include "gamedata/hog_writer.h"
#include "gamedata_writers.h"
#include "support/sample_document.h"
#include "support/scripted_prompts.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

// Records its folder and arguments, prints a failure line, then waits when told to.
fs::path StandIn(const fs::path& dir, bool wait) {
    const fs::path program = dir / "Descent3";
    std::ofstream(program) << "#!/bin/sh\n"
                              "printf '%s\\n' \"$PWD\" \"$@\" > \"$(dirname \"$0\")/args.txt\"\n"
                              "echo 'Loading level 1'\n"
                              "echo \"Couldn't load file 'ship.oof' in AssignGenericPage...\"\n"
                           << (wait ? "echo ready\nexec sleep 30\n" : "exit 0\n");
    fs::permissions(program, fs::perms::owner_exec, fs::perm_options::add);
    return program;
}

std::string Slurp(const fs::path& p) {
    std::ifstream in(p);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

TEST(GameTestWindowTest, StartsTheGameShowsItsOutputAndListsTheFailure) {
    test::TempDir dir("test-in-game");
    const fs::path mission = dir / "demo.mn3";
    WriteFileReplacing(mission,
                       WriteHOG({{"demo.gam", GamWriter().sound("Bang", "b.wav").bytes()}}));
    GameTestWindow window;
    window.show();
    QSignalSpy ended(&window, &GameTestWindow::gameEnded);
    const PlaySetup setup{StandIn(dir.path(), false), dir / "game", mission, 1, dir / "scratch"};
    ASSERT_EQ(window.Start(setup), "");
    ASSERT_TRUE(ended.wait(10000));
    const std::string scratch = (dir / "scratch").string();
    EXPECT_EQ(Slurp(dir / "args.txt"), scratch + "\n-setdir\n" + scratch + "\n-additionaldir\n" +
                                           (dir / "game").string() + "\n-additionaldir\n" +
                                           scratch +
                                           "\n-mission\ndemo.mn3\n-loadlevel\n1\n"
                                           "-windowed\n");
    EXPECT_TRUE(fs::exists(dir / "scratch" / "missions" / "demo.mn3"));
    EXPECT_TRUE(window.output().toPlainText().contains("Loading level 1"));
    EXPECT_EQ(window.status().text(), "The game ended with exit code 0.");
    ASSERT_EQ(window.problems().topLevelItemCount(), 1);
    EXPECT_EQ(window.problems().topLevelItem(0)->text(0), "file not found");
    EXPECT_EQ(window.problems().topLevelItem(0)->text(1), "ship.oof");
    EXPECT_EQ(window.problems().topLevelItem(0)->text(2), "generic page");
}

TEST(GameTestWindowTest, StopEndsTheGame) {
    test::TempDir dir("test-in-game-stop");
    const fs::path mission = dir / "demo.mn3";
    WriteFileReplacing(mission, WriteHOG({{"demo.gam", GamWriter().bytes()}}));
    GameTestWindow window;
    window.show();
    QSignalSpy ended(&window, &GameTestWindow::gameEnded);
    ASSERT_EQ(window.Start({StandIn(dir.path(), true), {}, mission, 1, dir / "scratch"}), "");
    // The window keeps working while the game runs: its output arrives through the loop.
    for (int i = 0; i < 100 && !window.output().toPlainText().contains("ready"); ++i)
        QTest::qWait(50);
    ASSERT_TRUE(window.output().toPlainText().contains("ready"));
    EXPECT_TRUE(window.IsRunning());
    window.Stop();
    ASSERT_TRUE(ended.count() > 0 || ended.wait(5000));
    EXPECT_FALSE(window.IsRunning());
    EXPECT_EQ(window.status().text(), "The game was stopped.");
}

class TestInGamePreparation : public ::testing::Test {
  protected:
    TestInGamePreparation() : files_(sample_.doc, game_, settings_, prompts_, nullptr) {
        mission_ = dir_ / "demo.mn3";
        WriteFileReplacing(mission_, WriteHOG({{"demo.gam", GamWriter().bytes()}}));
        settings_.MN3GAMPath = mission_.string();
        settings_.GameProgram = StandIn(dir_.path(), false).string();
        // The model as the user saved it, beside the mission.
        model_ = dir_ / "ship.oof";
        WriteFileReplacing(model_, test::SavedBytes(sample_.doc.model()));
        sample_.doc.SetModelFile(QString::fromStdString(model_.string()), "ship.oof");
    }
    std::optional<PlaySetup> Prepare() {
        return PrepareTestInGame(sample_.doc, files_, settings_, prompts_, nullptr);
    }
    test::TempDir dir_{"test-in-game-prepare"};
    fs::path mission_, model_;
    Settings settings_;
    GameData game_;
    test::SampleDocument sample_;
    test::ScriptedPrompts prompts_;
    FileCommands files_;
};

TEST_F(TestInGamePreparation, WithoutAGameProgramSaysWhatToInstallAndWhere) {
    settings_.GameProgram.clear();
    EXPECT_FALSE(Prepare());
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_EQ(prompts_.messages[0].text.toStdString(), NoGameProgramMessage());
    EXPECT_NE(NoGameProgramMessage().find("\"Game program:\""), std::string::npos);
}

TEST_F(TestInGamePreparation, PutsTheSavedModelIntoTheMissionWhenAsked) {
    prompts_.answers = {QMessageBox::Cancel};
    EXPECT_FALSE(Prepare());
    EXPECT_EQ(prompts_.questions.value(0),
              "demo.mn3 holds no ship.oof. Put the saved model into it first?");
    prompts_.answers = {QMessageBox::Yes};
    const auto setup = Prepare();
    ASSERT_TRUE(setup);
    EXPECT_EQ(CompareMissionCopy(mission_, model_), MissionCopy::Same);
    EXPECT_EQ(setup->Mission, mission_);
    // Now the copy is current: nothing to ask.
    prompts_.questions.clear();
    EXPECT_TRUE(Prepare());
    EXPECT_TRUE(prompts_.questions.isEmpty());

    // An unsaved change is offered a save first; No tests what was saved.
    sample_.doc.MarkUnsaved();
    prompts_.answers = {QMessageBox::No};
    EXPECT_TRUE(Prepare());
    EXPECT_EQ(prompts_.questions.value(0), "Save ship.oof before testing it in the game?");
}

}  // namespace
}  // namespace mw
