#include <gtest/gtest.h>

#include <QImage>
#include <nlohmann/json.hpp>

#include <fstream>
#include <sstream>

#include "cli/cli.h"
#include "gamedata_writers.h"
#include "model/file_io.h"
#include "support/cli_run.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

using test::Cli;
using test::CliRun;

const std::string kSample = MW_SOURCE_DIR "/samples/ship.oof";
const std::string kArchive = MW_SOURCE_DIR "/samples/gamedata/d3.hog";

TEST(CliGameData, TexturesResolveTheSampleThroughItsArchive) {
    const CliRun r = Cli({"textures", kSample, "--d3hog", kArchive, "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(
        r.out.starts_with("{\"object_kind\":1,\"textures\":[{\"name\":\"ship_hull\","
                          "\"game_name\":\"Sample Hull\",\"source\":\"d3.hog\",\"path\":"
                          "\"ship_hull.ogf\",\"decoded\":true,\"status\":0,\"width\":64,"
                          "\"height\":64,\"frames\":0,\"frame_time\":0,\"has_alpha\":false"));
    EXPECT_NE(r.out.find("\"name\":\"ship_turret\",\"game_name\":\"Sample Turret Light\","
                         "\"source\":\"d3.hog\",\"path\":\"ship_turret.oaf\",\"decoded\":true,"
                         "\"status\":0,\"width\":32,\"height\":32,\"frames\":4,"
                         "\"frame_time\":0.25"),  // the page's speed 1 over four frames
              std::string::npos);
    EXPECT_NE(r.out.find("\"slide_u\":2"), std::string::npos);

    // Without game data every texture is the placeholder.
    const CliRun none = Cli({"textures", kSample});
    EXPECT_EQ(none.status, 0);
    EXPECT_NE(none.out.find("missing"), std::string::npos);
    EXPECT_NE(none.out.find("placeholder"), std::string::npos);
}

TEST(CliGameData, TexturesReadPathsFromTheSettingsFile) {
    test::TempDir dir("cli_settings");
    const std::string ini = (dir / "MWUIData.ini").string();
    std::ofstream(ini) << "[Path Settings]\nD3HogPath=" << kArchive << "\n";
    const CliRun r = Cli({"textures", kSample, "--settings", ini, "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out.find("\"missing\""), std::string::npos);
}

// A 4 x 4 image of one colour.
Bytes Plain(std::uint32_t rgba) {
    return WriteOGF({4, 4, std::vector<std::uint32_t>(16, rgba)}, {});
}

// The source of each texture, by name, from the JSON.
std::string SourceOf(const std::string& json, const std::string& name) {
    const auto at = json.find("\"name\":\"" + name + "\"");
    if (at == std::string::npos) return "?";
    const auto s = json.find("\"source\":\"", at) + 10;
    return json.substr(s, json.find('"', s) - s);
}

TEST(CliGameData, TexturesNameWhereEachTextureCameFrom) {
    test::TempDir dir("cli_sources");
    ASSERT_EQ(WriteFileReplacing(dir / "Ship_Wing.OGF", Plain(0xff00ff00u)), "");
    ASSERT_EQ(
        WriteFileReplacing(dir / "Mine.mn3", WriteHOG({{"ship_turret.ogf", Plain(0xffff0000u)}})),
        "");
    ASSERT_EQ(
        WriteFileReplacing(dir / "Extra13.hog", WriteHOG({{"SHIP_TURRET.ogf", Plain(0xffu)}})), "");
    // The folder is given without its trailing separator.
    const CliRun r = Cli({"textures", kSample, "--d3hog", kArchive, "--ogf-path",
                          dir.path().string(), "--mission", (dir / "Mine.mn3").string(),
                          "--extra13", (dir / "Extra13.hog").string(), "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(SourceOf(r.out, "ship_hull"), "d3.hog");
    EXPECT_EQ(SourceOf(r.out, "ship_wing"), "loose");
    EXPECT_EQ(SourceOf(r.out, "ship_turret"), "mission");
    const CliRun noMission =
        Cli({"textures", kSample, "--d3hog", kArchive, "--ogf-dir", dir.path().string(),
             "--extra13", (dir / "Extra13.hog").string(), "--json"});
    EXPECT_EQ(SourceOf(noMission.out, "ship_wing"), "loose");  // --ogf-dir is the same option
    EXPECT_EQ(SourceOf(noMission.out, "ship_turret"), "extra13.hog");
    EXPECT_EQ(SourceOf(Cli({"textures", kSample, "--json"}).out, "ship_hull"), "missing");
}

// Every command answers --help on stdout and refuses an option it does not know.
TEST(CliContract, EveryCommandHasHelpAndRefusesUnknownOptions) {
    const std::vector<std::vector<std::string>> commands = {{"info", kSample},
                                                            {"resave", kSample, "out.oof"},
                                                            {"edit", kSample, "out.oof"},
                                                            {"convert", kSample, "out.orf"},
                                                            {"render", kSample, "--png", "out.png"},
                                                            {"thumbnail", kSample, "out.png"},
                                                            {"sheet", kArchive, "--png", "out.png"},
                                                            {"textures", kSample},
                                                            {"hog", "list", kArchive},
                                                            {"image", kArchive},
                                                            {"check", kSample},
                                                            {"gam", "dump", kArchive}};
    for (const auto& command : commands) {
        auto help = command;
        help.push_back("--help");
        const CliRun h = Cli(help);
        EXPECT_EQ(h.status, 0) << command[0];
        EXPECT_TRUE(h.out.starts_with("Usage: meshwright-cli " + command[0])) << command[0];
        EXPECT_TRUE(h.err.empty()) << command[0];
        auto bogus = command;
        bogus.insert(bogus.begin() + 1, "--bogus");
        const CliRun b = Cli(bogus);
        EXPECT_EQ(b.status, kExitUsage) << command[0] << ": " << b.err;
        EXPECT_NE(b.err.find("Usage:"), std::string::npos) << command[0];
    }
    EXPECT_EQ(Cli({"--help"}).status, 0);
    EXPECT_EQ(Cli({"--bogus"}).status, kExitUsage);
    // Game-data options lacking their value are refused, not taken as a model.
    EXPECT_EQ(Cli({"textures", kSample, "--ogf-path"}).status, kExitUsage);
}

TEST(CliGameData, HogListAndExtract) {
    const CliRun list = Cli({"hog", "list", kArchive, "--json"});
    ASSERT_EQ(list.status, 0);
    EXPECT_TRUE(
        list.out.starts_with("[{\"name\":\"sample.gam\",\"offset\":356,\"length\":6664,"
                             "\"kind\":\"table\"},{\"name\":\"ship.oof\""));
    EXPECT_NE(list.out.find("\"kind\":\"model\""), std::string::npos);
    EXPECT_NE(list.out.find("\"kind\":\"animation\""), std::string::npos);

    test::TempDir dir("cli_hog");
    const std::string out = (dir / "wing.ogf").string();
    ASSERT_EQ(Cli({"hog", "extract", kArchive, "SHIP_WING.OGF", out}).status, 0);
    const auto all = ReadFileBytes(kArchive);
    const auto one = ReadFileBytes(out);
    ASSERT_TRUE(one && all);
    EXPECT_TRUE(std::search(all->begin(), all->end(), one->begin(), one->end()) != all->end());
    EXPECT_EQ(Cli({"hog", "extract", kArchive, "nope.ogf", out}).status, kExitNoInput);
    EXPECT_EQ(Cli({"hog", "list", kSample}).status, 2);  // not an archive
    EXPECT_EQ(Cli({"hog", "list", (dir / "none.hog").string()}).status, kExitNoInput);
    EXPECT_EQ(Cli({"hog"}).status, kExitUsage);
}

TEST(CliGameData, ImageWritesPngsWithTheRightColoursWhateverTheType) {
    test::TempDir dir("cli_image");
    // The same picture as every image type: a red top row over a translucent blue one.
    const std::uint32_t red = 0xFF0000F8u, blue = 0x00F80000u;
    const RgbaImage picture{2, 2, {red, red, blue, blue}};
    for (std::uint8_t type : {2, 10, 121, 122, 127}) {
        for (bool topDown : {true, false}) {
            const std::string file = (dir / ("t" + std::to_string(type) + ".ogf")).string();
            ASSERT_EQ(WriteFileReplacing(file, WriteOGF(picture, {type, 32, topDown, 1, "p", 0})),
                      "");
            const std::string png = (dir / "out.png").string();
            const CliRun r = Cli({"image", file, "--png", png, "--json"});
            ASSERT_EQ(r.status, 0) << r.err;
            EXPECT_NE(r.out.find("\"type\":" + std::to_string(type)), std::string::npos);
            QImage back(QString::fromStdString(png));
            ASSERT_EQ(back.width(), 2);
            const QColor top = back.pixelColor(0, 0), bottom = back.pixelColor(1, 1);
            EXPECT_GE(top.red(), 240) << int(type);
            EXPECT_EQ(top.blue(), 0) << int(type);
            EXPECT_GE(top.alpha(), 240) << int(type);
            EXPECT_GE(bottom.blue(), 240) << int(type);
            EXPECT_EQ(bottom.red(), 0) << int(type);
            EXPECT_EQ(bottom.alpha(), 0) << int(type);
        }
    }
}

TEST(CliGameData, ImageFramesOfAnArchivedAnimation) {
    test::TempDir dir("cli_frames");
    const std::string png = (dir / "f.png").string();
    const CliRun r =
        Cli({"image", kArchive + ":ship_turret.oaf", "--frame", "3", "--png", png, "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out,
              "{\"type\":121,\"width\":32,\"height\":32,\"depth\":32,\"mip_count\":3,"
              "\"has_alpha\":false,\"frames\":4,\"name\":\"ship_turret\"}\n");
    const QColor centre = QImage(QString::fromStdString(png)).pixelColor(16, 16);
    EXPECT_GT(centre.green(), 200);  // the light at its brightest
    EXPECT_EQ(Cli({"image", kArchive + ":ship_turret.oaf", "--frame", "4"}).status, kExitUsage);
    EXPECT_EQ(Cli({"image", kSample}).status, 1);  // not an image
}

TEST(CliGameData, GamDumpNamesEveryFieldByWhatItMeans) {
    const CliRun r = Cli({"gam", "dump", kArchive, "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    const auto j = nlohmann::json::parse(r.out);
    ASSERT_EQ(j["pages"].size(), 5u);
    EXPECT_EQ(j["pages"][0]["kind"], "texture");
    EXPECT_EQ(j["pages"][0]["bitmap"], "ship_hull.ogf");
    const auto& ship = j["pages"][4];
    EXPECT_EQ(ship["kind"], "generic");
    EXPECT_EQ(ship["model"], "ship.oof");
    for (const char* key : {"medium_model", "low_model", "size", "hit_points", "physics", "ai"})
        EXPECT_TRUE(ship.contains(key)) << key;
    EXPECT_EQ(ship["animation"]["standing"]["idle"].size(), 4u);  // from, to, speed, sound
    EXPECT_EQ(ship["batteries"][0]["weapons"][0], "Laser");
    EXPECT_EQ(ship["batteries"][0]["masks"][0]["mask"], 1);

    const CliRun one = Cli({"gam", "dump", kArchive, "--page", "SAMPLE WING STRIPES"});
    ASSERT_EQ(one.status, 0);
    EXPECT_TRUE(one.out.starts_with("texture \"Sample Wing Stripes\" (88 bytes)\n")) << one.out;
    EXPECT_NE(one.out.find("  slide_u = 2\n"), std::string::npos);
    EXPECT_EQ(Cli({"gam", "dump", kArchive, "--page", "nothing"}).status, kExitRefused);
    EXPECT_EQ(Cli({"gam", "dump"}).status, kExitUsage);
    EXPECT_EQ(Cli({"gam", "frobnicate", kArchive}).status, kExitUsage);
    EXPECT_EQ(Cli({"gam", "dump", "/no/such.gam"}).status, kExitNoInput);
}

}  // namespace
}  // namespace mw
