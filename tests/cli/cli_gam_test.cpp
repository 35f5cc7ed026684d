// gam set, add-object, remove and merge, and package --object/--replace: what they write
// reads back with the change and nothing else changed; refusals write nothing.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "gamedata/hog_writer.h"
#include "gamedata_writers.h"
#include "model/file_io.h"
#include "sample_gamedata.h"
#include "support/cli_run.h"
#include "support/engine_pages.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

using test::Cli;
using Json = nlohmann::json;

class CliGamTest : public ::testing::Test {
  protected:
    CliGamTest() : dir_("cli-gam") {
        GamWriter w;
        w.object(ObjectPage("GuideBotRed", {"guidebot.oof", "guidebot_med.oof", ""}, 0, 25));
        w.ship("Black Pyro", "pyro.oof", 6);
        w.weapon("GreenFlare", "flare.oof", 0, 8);
        w.texture({"Hull", "hull.ogf", 1, 0, 0, 0, 0});
        EXPECT_EQ(WriteFileReplacing(dir_ / "extra.gam", w.bytes()), "");
        std::filesystem::create_directories(dir_ / "game");
        EXPECT_EQ(WriteFileReplacing(dir_ / "game/d3.hog", BuildSampleArchive()), "");
    }
    std::string P(const std::string& name) const { return (dir_ / name).string(); }
    Json Page(const std::string& table, const std::string& name) {
        const auto r = Cli({"gam", "dump", table, "--json", "--page", name});
        EXPECT_EQ(r.status, 0) << r.err;
        return r.status == 0 ? Json::parse(r.out)["pages"][0] : Json();
    }
    test::TempDir dir_;
};

TEST_F(CliGamTest, SetChangesTheNamedFieldsOnlyInAFileOrAnArchive) {
    const Json before = Page(P("extra.gam"), "Black Pyro");
    ASSERT_EQ(Cli({"gam", "set", P("extra.gam"), P("out.gam"), "black pyro", "size=7.5",
                   "batteries.1.weapons.0=Vauss"})
                  .status,
              0);
    Json expected = before;
    expected["size"] = 7.5;
    expected["batteries"][1]["weapons"][0] = "Vauss";
    EXPECT_EQ(Page(P("out.gam"), "Black Pyro"), expected);
    EXPECT_EQ(Page(P("out.gam"), "GuideBotRed"), Page(P("extra.gam"), "GuideBotRed"));
    EXPECT_EQ(test::ReadAsEngine(*ReadFileBytes(dir_ / "out.gam")).Error, "");

    // Inside an archive, only the table changes.
    ASSERT_EQ(Cli({"gam", "set", P("game/d3.hog"), P("d3x.hog"), "Sample Ship",
                   "animation.standing.idle.to=12"})
                  .status,
              0);
    const auto oldFiles = *ReadHogFiles(*ReadFileBytes(dir_ / "game/d3.hog"));
    const auto newFiles = *ReadHogFiles(*ReadFileBytes(dir_ / "d3x.hog"));
    ASSERT_EQ(oldFiles.size(), newFiles.size());
    for (std::size_t i = 0; i < oldFiles.size(); ++i) {
        EXPECT_EQ(oldFiles[i].Name, newFiles[i].Name);
        if (oldFiles[i].Name != "sample.gam") {
            EXPECT_EQ(oldFiles[i].Data, newFiles[i].Data);
        }
    }
    EXPECT_EQ(Page(P("d3x.hog"), "Sample Ship")["animation"]["standing"]["idle"]["to"], 12);

    // Refusals write nothing.
    for (const std::vector<std::string>& bad :
         {std::vector<std::string>{"gam", "set", P("extra.gam"), P("no.gam"), "Nobody", "size=1"},
          {"gam", "set", P("extra.gam"), P("no.gam"), "Black Pyro", "wings=2"},
          {"gam", "set", P("extra.gam"), P("no.gam"), "Black Pyro", "flags=many"}}) {
        EXPECT_EQ(Cli(bad).status, kExitRefused) << bad[5];
        EXPECT_FALSE(std::filesystem::exists(dir_ / "no.gam"));
    }
    EXPECT_EQ(Cli({"gam", "set", P("extra.gam"), P("no.gam"), "Black Pyro", "size"}).status,
              kExitUsage);
    Bytes damaged = *ReadFileBytes(dir_ / "extra.gam");
    damaged.resize(damaged.size() - 3);
    ASSERT_EQ(WriteFileReplacing(dir_ / "damaged.gam", damaged), "");
    const auto r = Cli({"gam", "set", P("damaged.gam"), P("no.gam"), "Hull", "alpha=0.5"});
    EXPECT_EQ(r.status, kExitRefused);
    EXPECT_NE(r.err.find("runs past the end of the table"), std::string::npos) << r.err;
    EXPECT_FALSE(std::filesystem::exists(dir_ / "no.gam"));
}

TEST_F(CliGamTest, AddObjectCopiesAPageUnderANewNameWithNewModels) {
    ASSERT_EQ(Cli({"gam", "add-object", P("extra.gam"), P("out.gam"), "--like", "GuideBotRed",
                   "--name", "GuideBotBlue", "--model", "blue.oof", "--low", "blue_lo.oof"})
                  .status,
              0);
    Json expected = Page(P("extra.gam"), "GuideBotRed");
    Json made = Page(P("out.gam"), "GuideBotBlue");
    EXPECT_EQ(made["version"], 27);  // written in the current version
    for (const char* key : {"name", "model", "medium_model", "low_model"})
        expected.erase(key);
    EXPECT_EQ(made["name"], "GuideBotBlue");
    EXPECT_EQ(made["model"], "blue.oof");
    EXPECT_EQ(made["medium_model"], "");
    EXPECT_EQ(made["low_model"], "blue_lo.oof");
    for (const auto& [key, value] : expected.items()) {
        if (key != "version" && key != "old_third_sound") {  // what version 27 changed
            EXPECT_EQ(made[key], value) << key;
        }
    }
    // From another source, when the table lacks the page.
    EXPECT_EQ(Cli({"gam", "add-object", P("extra.gam"), P("out2.gam"), "--like", "Sample Ship",
                   "--from", P("game/d3.hog"), "--name", "Cutter", "--model", "cutter.oof"})
                  .status,
              0);
    EXPECT_EQ(Page(P("out2.gam"), "Cutter")["hit_points"], 100);
    // Refusals: a name taken, a model the game cannot load, a page without a model.
    for (const std::vector<std::string>& bad :
         {std::vector<std::string>{"--like", "GuideBotRed", "--name", "Black Pyro", "--model",
                                   "b.oof"},
          {"--like", "GuideBotRed", "--name", "Blue", "--model", "blue.pof"},
          {"--like", "Hull", "--name", "Blue", "--model", "blue.oof"},
          {"--like", "Nothing", "--name", "Blue", "--model", "blue.oof"}}) {
        std::vector<std::string> args{"gam", "add-object", P("extra.gam"), P("no.gam")};
        args.insert(args.end(), bad.begin(), bad.end());
        EXPECT_EQ(Cli(args).status, kExitRefused) << bad[3] << bad[5];
        EXPECT_FALSE(std::filesystem::exists(dir_ / "no.gam"));
    }
}

TEST_F(CliGamTest, RemoveAndMerge) {
    ASSERT_EQ(Cli({"gam", "remove", P("extra.gam"), P("less.gam"), "greenflare", "Hull"}).status,
              0);
    const Json less = Json::parse(Cli({"gam", "dump", P("less.gam"), "--json"}).out);
    ASSERT_EQ(less["pages"].size(), 2u);
    EXPECT_EQ(less["pages"][1]["name"], "Black Pyro");
    EXPECT_EQ(Cli({"gam", "remove", P("extra.gam"), P("no.gam"), "Nobody"}).status, kExitRefused);

    GamWriter other;
    other.sound("Laser Fire", "laser.wav");
    ASSERT_EQ(WriteFileReplacing(dir_ / "other.gam", other.bytes()), "");
    ASSERT_EQ(Cli({"gam", "merge", P("both.gam"), P("extra.gam"), P("other.gam")}).status, 0);
    const Bytes a = *ReadFileBytes(dir_ / "extra.gam"), b = *ReadFileBytes(dir_ / "other.gam");
    Bytes joined = a;
    joined.insert(joined.end(), b.begin(), b.end());
    EXPECT_EQ(*ReadFileBytes(dir_ / "both.gam"), joined);
    const auto twice = Cli({"gam", "merge", P("no.gam"), P("extra.gam"), P("less.gam")});
    EXPECT_EQ(twice.status, kExitRefused);
    EXPECT_NE(twice.err.find("GuideBotRed"), std::string::npos) << twice.err;
    EXPECT_FALSE(std::filesystem::exists(dir_ / "no.gam"));
}

TEST_F(CliGamTest, PackageMakesTheModelAGameObject) {
    std::filesystem::copy_file(MW_SOURCE_DIR "/samples/ship.oof", dir_ / "cutter.oof");
    std::filesystem::copy_file(MW_SOURCE_DIR "/samples/ship.oof", dir_ / "cutter_lo.oof");
    const std::string hog = P("game/d3.hog");
    const auto added = Cli({"package", P("cutter.oof"), P("mission.mn3"), "--object", "Cutter",
                            "--like", "Sample Ship", "--low", P("cutter_lo.oof"), "--d3hog", hog});
    ASSERT_EQ(added.status, 0) << added.err;
    Json made = Page(P("mission.mn3"), "Cutter");
    Json like = Page(hog, "Sample Ship");
    EXPECT_EQ(made["model"], "cutter.oof");
    EXPECT_EQ(made["low_model"], "cutter_lo.oof");
    for (const char* key : {"name", "model", "low_model"}) {
        made.erase(key);
        like.erase(key);
    }
    EXPECT_EQ(made, like);
    const auto files = *ReadHogFiles(*ReadFileBytes(dir_ / "mission.mn3"));
    ASSERT_EQ(files.size(), 3u);  // both models and the table
    EXPECT_EQ(files[2].Name, "mission.gam");

    ASSERT_EQ(
        Cli({"package", P("cutter.oof"), P("swap.mn3"), "--replace", "sample ship", "--d3hog", hog})
            .status,
        0);
    EXPECT_EQ(Page(P("swap.mn3"), "Sample Ship")["model"], "cutter.oof");
    EXPECT_EQ(Cli({"package", P("cutter.oof"), P("no.mn3"), "--replace", "Nobody", "--d3hog", hog})
                  .status,
              kExitRefused);
    EXPECT_FALSE(std::filesystem::exists(dir_ / "no.mn3"));
    EXPECT_EQ(Cli({"package", P("cutter.oof"), P("no.mn3"), "--object", "X"}).status, kExitUsage);
}

}  // namespace
}  // namespace mw
