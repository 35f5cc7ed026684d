#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "convert/orf_reader.h"
#include "convert/orf_writer.h"
#include "model/file_io.h"
#include "sample_model.h"
#include "support/cli_run.h"
#include "support/mutate.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

using test::Cli;

const std::string kSample = MW_SOURCE_DIR "/samples/ship.oof";
const std::string kArchive = MW_SOURCE_DIR "/samples/gamedata/d3.hog";

TEST(CliConvert, BothWaysWithTheSettingsFileDefaults) {
    test::TempDir dir("cli_convert");
    const std::string ini = (dir / "MWUIData.ini").string();
    std::ofstream(ini) << "[Path Settings]\nD3HogPath=" << kArchive
                       << "\n[ORF Conversion Options]\nCombine Rooms on Output=0\n";
    const std::string rooms = (dir / "ship.orf").string();
    const auto r = Cli({"convert", kSample, rooms, "--settings", ini});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(r.out.starts_with((dir / "ship00.orf").string() + "\n"));
    EXPECT_TRUE(std::filesystem::exists(dir / "ship06.orf"));
    EXPECT_FALSE(std::filesystem::exists(rooms));

    ASSERT_EQ(Cli({"convert", kSample, rooms, "--settings", ini, "--no-special-points"}).status, 0);
    ASSERT_EQ(Cli({"convert", kSample, rooms, "--special-face-size", "2"}).status, 0);
    EXPECT_TRUE(std::filesystem::exists(rooms));  // combined by default without settings

    // Back to a model: the game's table gives the bitmap names back.
    ASSERT_EQ(Cli({"convert", kSample, rooms, "--settings", ini, "--no-special-points"}).status, 0);
    const std::string back = (dir / "back.oof").string();
    ASSERT_EQ(Cli({"convert", (dir / "ship00.orf").string(), back, "--settings", ini}).status, 0);
    const auto info = Cli({"info", back, "--json"});
    EXPECT_NE(info.out.find("\"textures\":[{\"name\":\"ship_hull\""), std::string::npos);
    EXPECT_NE(Cli({"info", (dir / "ship00.orf").string(), "--json"}).out.find("\"Unnamed1\""),
              std::string::npos);
}

TEST(CliConvert, UsageAndRefusals) {
    test::TempDir dir("cli_convert_bad");
    EXPECT_EQ(Cli({"convert", kSample}).status, kExitUsage);
    EXPECT_EQ(Cli({"convert", kSample, (dir / "x.oof").string()}).status, kExitUsage);
    EXPECT_EQ(
        Cli({"convert", kSample, (dir / "x.orf").string(), "--special-face-size", "-1"}).status,
        kExitUsage);
    EXPECT_EQ(Cli({"convert", kSample, (dir / "none" / "x.orf").string()}).status, kExitCantCreate);
    std::ofstream((dir / "bad.orf").string()) << "not a room at all";
    const auto bad = Cli({"convert", (dir / "bad.orf").string(), (dir / "x.oof").string()});
    EXPECT_EQ(bad.status, 5);
    EXPECT_EQ(bad.err, "No ORF model data to import\n");
}

TEST(CliConvert, AnyBytesGivenAsARoomEndWithARoomStatus) {
    ModelData ship = BuildSampleModel();
    test::TempDir dir("orf_fuzz");
    ASSERT_TRUE(SaveORF(ship, (dir / "ship.orf").string(), {}).Written);
    const auto original = *ReadFileBytes(dir / "ship.orf");
    std::mt19937 rng(42);
    for (int round = 0; round < 3000; ++round) {
        const auto bytes = test::Mutated(original, rng);
        ModelData m;
        const int status = static_cast<int>(importORF(m, bytes, GameNameTable::Builtin()));
        ASSERT_TRUE(status == 0 || status == 5 || status == 6 || status == 7) << status;
    }
}

}  // namespace
}  // namespace mw
