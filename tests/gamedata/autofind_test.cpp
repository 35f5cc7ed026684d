// Autofind over scratch home folders laid out as real machines are.
#include "gamedata/autofind.h"

#include <gtest/gtest.h>
#include <fstream>

#include "support/temp_dir.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

void Touch(const fs::path& p) {
    fs::create_directories(p.parent_path());
    std::ofstream(p) << "x";
}

class AutofindTest : public ::testing::Test {
  protected:
    AutofindPlaces Places() const {
        AutofindPlaces p;
        p.home = home_.path();
        p.systemFolders = {dir_ / "opt"};
        return p;
    }
    test::TempDir dir_{"autofind"};
    test::TempDir home_{"autofind-home"};
};

TEST_F(AutofindTest, SteamLibraryListedInLibraryFolders) {
    // Steam in its usual place, the game in a second library on another disk.
    const fs::path library = dir_ / "mnt" / "SteamLibrary";
    fs::create_directories(home_ / ".local/share/Steam/steamapps");
    std::ofstream(home_ / ".local/share/Steam/steamapps/libraryfolders.vdf")
        << "\"libraryfolders\"\n{\n\t\"0\"\n\t{\n\t\t\"path\"\t\t\""
        << (home_ / ".local/share/Steam").string()
        << "\"\n\t\t\"apps\" { \"228980\" \"1\" }\n\t}\n\t\"1\"\n\t{\n\t\t\"path\"\t\t\""
        << library.string() << "\"\n\t}\n}\n";
    const fs::path game = library / "steamapps/common/Descent 3";
    Touch(game / "D3.HOG");
    Touch(game / "Tools" / "pofgen" / "POFGEN.EXE");  // two levels down: not found
    Touch(game / "sdk" / "PofGen.exe");
    Touch(game / "zz" / "bspgen.exe");

    const AutofindResult r = Autofind(Places());
    EXPECT_EQ(r.gameDir, game.string() + "/");
    EXPECT_EQ(r.d3Hog, (game / "D3.HOG").string());
    EXPECT_EQ(r.compiler, (game / "sdk" / "PofGen.exe").string());
}

TEST_F(AutofindTest, WinePrefixAndPreferenceForAFolderHoldingTheArchive) {
    // An emptied Steam folder comes first in the order but holds no d3.hog.
    fs::create_directories(home_ / ".steam/steam/steamapps/common/Descent 3");
    const fs::path game = home_ / ".wine/drive_c/Games/Descent3";
    Touch(game / "d3.hog");
    Touch(game / "bspgen.exe");
    const AutofindResult r = Autofind(Places());
    EXPECT_EQ(r.gameDir, game.string() + "/");
    EXPECT_EQ(r.d3Hog, (game / "d3.hog").string());
    EXPECT_EQ(r.compiler, (game / "bspgen.exe").string());
    EXPECT_EQ(GameFolderCandidates(Places()).size(), 2u);
}

TEST_F(AutofindTest, UsualFoldersThenTheHomeFolderFallback) {
    Touch(dir_ / "opt" / "descent3" / "d3.hog");
    EXPECT_EQ(Autofind(Places()).gameDir, (dir_ / "opt" / "descent3").string() + "/");
    fs::remove_all(dir_ / "opt");

    // As on a drive's root: a folder holding "Descent3" one level down.
    Touch(home_ / "stuff" / "Descent3" / "d3.hog");
    const AutofindResult r = Autofind(Places());
    EXPECT_EQ(r.gameDir, (home_ / "stuff" / "Descent3").string() + "/");
    EXPECT_EQ(r.compiler, "");
}

TEST_F(AutofindTest, NothingToFind) {
    fs::create_directories(home_ / "Documents");
    const AutofindResult r = Autofind(Places());
    EXPECT_EQ(r.gameDir, "");
    EXPECT_EQ(r.d3Hog, "");
}

TEST_F(AutofindTest, GameProgramInGameFolderThenOnThePathThenAtHome) {
    const auto program = [](const fs::path& p) {
        Touch(p);
        fs::permissions(p, fs::perms::owner_exec, fs::perm_options::add);
    };
    AutofindPlaces places = Places();
    places.programFolders = {dir_ / "bin", dir_ / "games"};
    // Nothing yet: a file of that name that cannot be run does not count.
    Touch(dir_ / "bin" / "Descent3");
    EXPECT_EQ(Autofind(places).gameProgram, "");

    program(home_ / ".local/bin" / "descent3");
    EXPECT_EQ(Autofind(places).gameProgram, (home_ / ".local/bin" / "descent3").string());
    program(dir_ / "games" / "Descent3");
    EXPECT_EQ(Autofind(places).gameProgram, (dir_ / "games" / "Descent3").string());

    // A game folder holding a build of the engine wins over the PATH.
    const fs::path game = dir_ / "opt" / "Descent3";
    Touch(game / "d3.hog");
    program(game / "build" / "Descent3" / "Descent3");
    const AutofindResult r = Autofind(places);
    EXPECT_EQ(r.gameDir, game.string() + "/");
    EXPECT_EQ(r.gameProgram, (game / "build" / "Descent3" / "Descent3").string());
}

}  // namespace
}  // namespace mw
