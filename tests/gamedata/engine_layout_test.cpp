// What our writers put into tables and images is what the game's own loaders read: every
// page ends where its fields end (read by a reader that follows the game's field order, not
// by our own lenient page reader), and the sample's game data loads in the game.
#include <gtest/gtest.h>

#include "gamedata/gam_writer.h"
#include "gamedata/hog_writer.h"
#include "gamedata/ogf.h"
#include "model/file_io.h"
#include "sample_gamedata.h"
#include "support/engine_pages.h"

namespace mw {
namespace {

std::vector<HogFile> SampleFiles() {
    const auto bytes = ReadFileBytes(MW_SOURCE_DIR "/samples/gamedata/d3.hog");
    EXPECT_TRUE(bytes.has_value());
    return ReadHogFiles(bytes.value_or(std::vector<std::uint8_t>{}))
        .value_or(std::vector<HogFile>{});
}

TEST(EngineLayout, TheSampleTableAndImagesLoadAsTheGameReadsThem) {
    const std::vector<HogFile> files = SampleFiles();
    ASSERT_FALSE(files.empty());
    std::vector<std::string> names;
    for (const HogFile& f : files) {
        names.push_back(f.Name);
        if (f.Name.ends_with(".gam")) {
            const test::EngineTable table = test::ReadAsEngine(f.Data);
            ASSERT_EQ(table.Error, "");
            ASSERT_EQ(table.Pages.size(), 5u);
            EXPECT_EQ(table.Pages[2].Bitmap, "ship_turret.oaf");
            EXPECT_NE(table.Pages[2].Flags & kTexFlagAnimated, 0u);
            EXPECT_EQ(table.Pages[4].Type, 10);
            EXPECT_EQ(table.Pages[4].Models[0], "ship.oof");
        }
        if (f.Name.ends_with(".ogf")) {
            clsOGF ogf;
            ByteReader r(f.Data);
            ASSERT_EQ(ogf.ReadOGF(r), OgfStatus::Ok) << f.Name;
            EXPECT_TRUE(ogf.Image.GameReadsHeader) << f.Name;
        }
    }
    EXPECT_EQ(FirstOutOfOrder(names), -1);
}

TEST(EngineLayout, EveryPageWeWriteEndsWhereItsFieldsEnd) {
    std::vector<std::uint8_t> table;
    for (const TexturePage& page :
         {TexturePage{"hull", "hull.ogf", 64, 64, false, 1.0f},
          TexturePage{std::string(40, 'n'), "light.oaf", 256, 32, true, 0.8f}}) {
        const auto bytes = WriteTexturePage(page);
        table.insert(table.end(), bytes.begin(), bytes.end());
    }
    GamWriter fixtures;
    for (std::int16_t version = 14; version <= 27; ++version)
        fixtures.object(
            ObjectPage("Robot " + std::to_string(version), {"r.oof", "", ""}, 0, version));
    fixtures.object(ObjectPage("Powerup", {"p.oof", "", ""}, 0, 27, 7));
    fixtures.texture({"Lava", "lava.oaf", 1.0f, 2.0f, 0.0f, 0.0f, kTexFlagAnimated});
    table.insert(table.end(), fixtures.bytes().begin(), fixtures.bytes().end());

    const test::EngineTable read = test::ReadAsEngine(table);
    ASSERT_EQ(read.Error, "");
    ASSERT_EQ(read.Pages.size(), 2u + 14u + 2u);
    EXPECT_EQ(read.Pages[1].Name, std::string(kPageNameLength, 'n'));  // cut to what a page holds
    EXPECT_FLOAT_EQ(read.Pages[1].Speed, 0.8f);
    EXPECT_EQ(read.Pages[1].Flags, kTexFlagObject | kTexFlagSize256 | kTexFlagAnimated);
    EXPECT_EQ(read.Pages[15].Version, 27);
}

TEST(EngineLayout, TheEngineReaderNoticesAPageLongerOrShorterThanItsFields) {
    auto page = WriteTexturePage({"hull", "hull.ogf", 64, 64, false, 1.0f});
    page.push_back(0);
    page[1] += 1;  // the length counts the extra byte
    EXPECT_NE(test::ReadAsEngine(page).Error.find("declares"), std::string::npos);
    page.resize(page.size() - 2);
    EXPECT_NE(test::ReadAsEngine(page).Error, "");
}

}  // namespace
}  // namespace mw
