// Trying a mission in the game: the scratch folder and arguments, the game's output read for
// what it could not load (with lines as the engine prints them), the mission's copy of the
// model, and `play` with a stand-in game program that records how it was started.
#include "convert/game_run.h"

#include <gtest/gtest.h>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "gamedata/hog_writer.h"
#include "gamedata_writers.h"
#include "model/file_io.h"
#include "support/cli_run.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

std::string Slurp(const fs::path& p) {
    std::ifstream in(p);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

// A game program that writes its arguments and folder to args.txt beside itself and prints
// the lines given, one of them a failure to load a model.
fs::path StandInGame(const fs::path& dir) {
    const fs::path program = dir / "Descent3";
    std::ofstream(program) << "#!/bin/sh\n"
                              "printf '%s\\n' \"$PWD\" \"$@\" > \"$(dirname \"$0\")/args.txt\"\n"
                              "echo 'Welcome to Descent 3'\n"
                              "echo \"[ERROR] Couldn't load file 'ship.oof' in "
                              "AssignGenericPage...\"\n"
                              "echo 'Level loaded'\n"
                              "exit 3\n";
    fs::permissions(program, fs::perms::owner_exec, fs::perm_options::add);
    return program;
}

fs::path Mission(const fs::path& dir, const std::string& name = "Test.mn3") {
    const fs::path path = dir / name;
    WriteFileReplacing(path, WriteHOG({{"Test.gam", GamWriter().sound("Bang", "bang.wav").bytes()},
                                       {"test.msn", Bytes{'N', 'A', 'M', 'E'}}}));
    return path;
}

TEST(GameRun, PrepareCopiesTheMissionAndOrdersTheFolders) {
    test::TempDir dir("game-run");
    PlaySetup setup{StandInGame(dir.path()), dir / "Descent3 data", Mission(dir.path()), 2,
                    dir / "scratch"};
    fs::create_directories(dir / "scratch" / "missions");
    std::ofstream(dir / "scratch" / "missions" / "Test.mn3") << "left from an earlier run";
    const PreparedPlay play = PreparePlay(setup);
    ASSERT_EQ(play.Error, "");
    const std::string scratch = (dir / "scratch").string();
    EXPECT_EQ(play.Arguments,
              (std::vector<std::string>{"-setdir", scratch, "-additionaldir",
                                        (dir / "Descent3 data").string(), "-additionaldir", scratch,
                                        "-mission", "Test.mn3", "-loadlevel", "2", "-windowed"}));
    EXPECT_EQ(play.WorkingDir, dir / "scratch");
    EXPECT_EQ(ReadFileBytes(play.MissionCopy), ReadFileBytes(setup.Mission));

    PlaySetup bad = setup;
    bad.Program.clear();
    EXPECT_EQ(PreparePlay(bad).Error, NoGameProgramMessage());
    bad = setup;
    bad.Mission = dir / "Test.gam";
    EXPECT_NE(PreparePlay(bad).Error.find("an .mn3 archive"), std::string::npos);
    bad = setup;
    bad.Program = dir / "nothing";
    EXPECT_NE(PreparePlay(bad).Error.find("does not exist"), std::string::npos);
}

TEST(GameRun, LogLinesAsTheEnginePrintsThem) {
    GameLogReader log;
    const std::string text =
        "Welcome to Descent 3 v1.5.500\r\n"
        "ERROR: Couldn't load file 'robot.oof' in AssignGenericPage...\n"
        "Couldn't load weapon file 'Plasma Gun' in AssignPowPage Sample Robot...\n"
        "Couldn't load file 'ship_dying.oof' in AssignShipPage...\n"
        "Error: Redundant addon page 'Sample Robot' loaded...\n"
        "bm_AllocLoadFileBitmap: Can't open file named hull.ogf.\n"
        "bm_tga: Can't read this type of TGA.\n"
        "Couldn't load wing.ogf.\n"
        "You have a turret that has no keyframe on model robot.oof.\n"
        "Couldn't load DLL.\n"
        "Unable to find bitmap thrustball";  // no end of line yet
    // Handed on in pieces that split lines, as a pipe delivers them.
    for (std::size_t i = 0; i < text.size(); i += 7)
        log.Add(std::string_view(text).substr(i, 7));
    EXPECT_EQ(log.Problems().size(), 7u);  // the last line waits for its end
    log.Finish();
    std::vector<std::string> described;
    for (const GameProblem& p : log.Problems())
        described.push_back(DescribeProblem(p));
    EXPECT_EQ(described, (std::vector<std::string>{
                             "file not found: robot.oof (named by a generic page)",
                             "weapon not found: Plasma Gun (named by page \"Sample Robot\")",
                             "file not found: ship_dying.oof (named by a ship page)",
                             "redundant page: Sample Robot",
                             "file not found: hull.ogf",
                             "bitmap type refused: wing.ogf",
                             "keys missing: robot.oof",
                             "file not found: thrustball",
                         }));
    EXPECT_EQ(log.Problems()[0].Line,
              "ERROR: Couldn't load file 'robot.oof' in AssignGenericPage...");
}

TEST(GameRun, MissionCopyOfTheModel) {
    test::TempDir dir("game-run-copy");
    const fs::path mission = Mission(dir.path());
    const fs::path model = dir / "ship.oof";
    WriteFileReplacing(model, Bytes{'P', 'S', 'P', 'O', 1});
    EXPECT_EQ(CompareMissionCopy(mission, model), MissionCopy::Missing);
    ASSERT_EQ(PutIntoMission(mission, model), "");
    EXPECT_EQ(CompareMissionCopy(mission, model), MissionCopy::Same);
    WriteFileReplacing(model, Bytes{'P', 'S', 'P', 'O', 2});
    EXPECT_EQ(CompareMissionCopy(mission, model), MissionCopy::Differs);
    ASSERT_EQ(PutIntoMission(mission, model), "");
    // Every other entry is as it was.
    const auto files = ReadHogFiles(*ReadFileBytes(mission));
    ASSERT_TRUE(files);
    ASSERT_EQ(files->size(), 3u);
    for (const HogFile& f : *files) {
        if (f.Name == "test.msn") {
            EXPECT_EQ(f.Data, (Bytes{'N', 'A', 'M', 'E'}));
        }
        if (f.Name == "ship.oof") {
            EXPECT_EQ(f.Data, (Bytes{'P', 'S', 'P', 'O', 2}));
        }
    }
    EXPECT_EQ(CompareMissionCopy(dir / "none.mn3", model), MissionCopy::Unreadable);
}

TEST(CliPlay, StartsTheGameShowsItsOutputAndListsWhatFailed) {
    test::TempDir dir("cli-play");
    const fs::path game = StandInGame(dir.path());
    const fs::path mission = Mission(dir.path(), "My Mission.mn3");
    WriteFileReplacing(dir / "d3.hog", WriteHOG({}));
    const test::CliRun run =
        test::Cli({"play", mission.string(), "--level", "3", "--game", game.string(), "--scratch",
                   (dir / "play").string(), "--d3hog", (dir / "d3.hog").string()});
    EXPECT_EQ(run.status, 65) << run.err;
    EXPECT_NE(run.out.find("Level loaded\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("The game ended with exit code 3."), std::string::npos);
    EXPECT_NE(run.out.find("What it could not load:\n  file not found: ship.oof (named by a "
                           "generic page)\n"),
              std::string::npos)
        << run.out;
    const std::string play = (dir / "play").string();
    EXPECT_EQ(Slurp(dir / "args.txt"), play + "\n-setdir\n" + play + "\n-additionaldir\n" +
                                           dir.path().string() + "\n-additionaldir\n" + play +
                                           "\n-mission\nMy Mission.mn3\n-loadlevel\n3\n"
                                           "-windowed\n");
    EXPECT_TRUE(fs::exists(dir / "play" / "missions" / "My Mission.mn3"));

    EXPECT_EQ(test::Cli({"play", mission.string(), "--level", "0"}).status, 64);
    EXPECT_EQ(
        test::Cli({"play", (dir / "gone.mn3").string(), "--game", game.string(), "--scratch", play})
            .status,
        66);
}

TEST(CliPlay, WithoutAGameProgramSaysWhatToInstall) {
    test::TempDir dir("cli-play-none");
    // Nothing on this PATH or in this home folder; the usual install places hold no engine
    // on a machine that runs the tests.
    const std::string oldPath = std::getenv("PATH") ? std::getenv("PATH") : "";
    const std::string oldHome = std::getenv("HOME") ? std::getenv("HOME") : "";
    setenv("PATH", dir.path().c_str(), 1);
    setenv("HOME", dir.path().c_str(), 1);
    const test::CliRun run =
        test::Cli({"play", Mission(dir.path()).string(), "--scratch", (dir / "play").string()});
    setenv("PATH", oldPath.c_str(), 1);
    setenv("HOME", oldHome.c_str(), 1);
    if (run.status == 0 || run.status == 65) GTEST_SKIP() << "this machine has the game installed";
    EXPECT_EQ(run.status, 69);
    EXPECT_EQ(run.err, NoGameProgramMessage() + "\n");
}

}  // namespace
}  // namespace mw
