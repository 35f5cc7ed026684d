// Whatever bytes the game-data readers are given, they end with a status: no crash, no
// read or write outside their buffers.
#include <gtest/gtest.h>

#include <random>

#include "gamedata/gam.h"
#include "gamedata/hog.h"
#include "gamedata/ini_file.h"
#include "gamedata/ogf.h"
#include "gamedata/settings.h"
#include "gamedata_writers.h"
#include "sample_gamedata.h"
#include "support/mutate.h"

namespace mw {
namespace {

using test::Mutated;

TEST(GameDataRobustness, MutatedArchivesImagesAndTablesEndWithAStatus) {
    const Bytes archive = BuildSampleArchive();
    std::vector<HogDirectoryEntry> entries;
    ASSERT_EQ(ReadHogEntries(archive, entries), HogStatus::Ok);
    std::vector<Bytes> files;
    std::vector<bool> animated;
    for (const auto& e : entries) {
        animated.push_back(HogEntryKind(e.Name) == std::string("animation"));
        files.emplace_back(archive.begin() + static_cast<std::ptrdiff_t>(e.Offset),
                           archive.begin() + static_cast<std::ptrdiff_t>(e.Offset + e.Length));
    }
    std::mt19937 rng(1123);
    for (int round = 0; round < 3000; ++round) {
        const Bytes hog = Mutated(archive, rng, 6);
        ReadHogEntries(hog, entries);

        const std::size_t pick = rng() % files.size();
        const Bytes file = Mutated(files[pick], rng, 6);
        clsOGF ogf;
        ByteReader r(file);
        TextureSlot slot;
        FrameStore store;
        const OgfStatus status = animated[pick] ? ogf.ReadOAF(r, slot, store) : ogf.ReadOGF(r);
        ASSERT_LE(static_cast<int>(status), 5);
        if (status == OgfStatus::Ok) {
            ASSERT_EQ(ogf.Image.Pixels.size(),
                      static_cast<std::size_t>(ogf.Image.Width) * ogf.Image.Height);
        }
        clsGAM gam;
        gam.ReadGamTable(file, 0, 1, nullptr);
        ASSERT_LE(gam.Textures.size(), static_cast<std::size_t>(kMaxGamEntries));
    }
}

TEST(GameDataRobustness, AnySettingsTextLoads) {
    std::mt19937 rng(77);
    const std::string base =
        "[View Settings]\nViewType=Textured\nViewMode=2\n[POFGEN Options]\nChunk Splits=1,2,3\n"
        "Scale=0.5\n[MRU]\nFile1=/a.oof\n";
    for (int round = 0; round < 2000; ++round) {
        const Bytes bytes = Mutated(Bytes(base.begin(), base.end()), rng, 6);
        clsIniFile ini;
        ini.SetText(std::string(bytes.begin(), bytes.end()));
        Settings s;
        LoadSettings(ini, s);
        ASSERT_LE(s.ViewMode, 3);
        ASSERT_GE(s.SpecialFaceSize, 0.1f);
        ASSERT_LE(s.RecentFiles.size(), 9u);
    }
}

}  // namespace
}  // namespace mw
