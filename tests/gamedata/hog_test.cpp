#include "gamedata/hog.h"

#include <gtest/gtest.h>

#include "gamedata_writers.h"
#include "model/file_io.h"
#include "support/alloc_tracker.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

Bytes Tiny(std::uint8_t marker) {
    return Bytes{marker, marker, marker};
}

void Write(const std::filesystem::path& path, const Bytes& bytes) {
    ASSERT_EQ(WriteFileReplacing(path, bytes), "");
}

class RecordingProgress : public ProgressSink {
  public:
    void Report(int percent, const std::string& text) override {
        percents.push_back(percent);
        if (!text.empty()) texts.push_back(text);
    }
    std::vector<int> percents;
    std::vector<std::string> texts;
};

TEST(Hog, DirectoryIndexesModelsTexturesAndTheLastTable) {
    test::TempDir dir("hog_index");
    Write(dir / "d3.hog", WriteHOG({{"a.gam", Tiny(1)},
                                    {"Ship.OOF", Tiny(2)},
                                    {"BRICK.OGF", Tiny(3)},
                                    {"fire.oaf", Tiny(4)},
                                    {"readme", Tiny(5)},
                                    {"b.gam", Tiny(6)}}));
    Settings s;
    s.D3HogPath = (dir / "d3.hog").string();
    DeriveArchivePaths(s);
    clsHOG hog;
    RecordingProgress progress;
    hog.ReadHOGs(s, &progress);
    ASSERT_TRUE(hog.Slots[1].Loaded);
    ASSERT_EQ(hog.Models.size(), 1u);
    EXPECT_EQ(hog.Models[0].Name, std::string("Ship.OOF") + std::string(28, '\0'));
    EXPECT_EQ(hog.Models[0].Offset, 68u + 6 * 48 + 3);
    ASSERT_EQ(hog.Textures.size(), 2u);
    EXPECT_TRUE(hog.Textures[0].IsOGF);
    EXPECT_FALSE(hog.Textures[1].IsOGF);
    EXPECT_EQ(EntryName(hog.Textures[0].Name), "brick.ogf");
    EXPECT_EQ(EntryName(hog.GamEntries[1].Name), "b.gam");  // the second table wins
    EXPECT_EQ(hog.GamEntries[1].Offset, 68u + 6 * 48 + 15);
    EXPECT_EQ(hog.Slots[1].FirstTexture, 0);
    EXPECT_EQ(hog.Slots[1].LastTexture, 1);
    EXPECT_EQ(progress.percents.back(), 100);
    EXPECT_EQ(progress.texts.front(), "Reading HOG data...");
    EXPECT_TRUE(hog.Slots[2].Path.empty());
    EXPECT_EQ(s.Extra13Path, "");  // no Extra13.hog beside it
}

TEST(Hog, BrokenArchivesLeaveEmptySlots) {
    test::TempDir dir("hog_broken");
    Bytes noOffset = WriteHOG({{"x.ogf", Tiny(1)}});
    for (int i = 8; i < 12; ++i)
        noOffset[static_cast<std::size_t>(i)] = 0;
    Write(dir / "d3.hog", noOffset);
    Write(dir / "Extra13.hog", Bytes{'H', 'O', 'G', '3', 0, 0, 0, 0});
    std::vector<HogDirectoryEntry> entries;
    EXPECT_EQ(ReadHogFileEntries((dir / "d3.hog").string(), entries), HogStatus::NoDataOffset);
    EXPECT_EQ(ReadHogFileEntries((dir / "Extra13.hog").string(), entries), HogStatus::NotHog);

    Settings s;
    s.D3HogPath = (dir / "d3.hog").string();
    DeriveArchivePaths(s);
    clsHOG hog;
    hog.ReadHOGs(s, nullptr);
    EXPECT_FALSE(hog.Slots[1].Loaded);
    EXPECT_FALSE(hog.Slots[2].Loaded);
    EXPECT_TRUE(hog.Textures.empty());
    EXPECT_EQ(hog.Slots[1].LastTexture, hog.Slots[1].FirstTexture - 1);

    Settings missing;
    missing.D3HogPath = (dir / "nothing" / "d3.hog").string();
    DeriveArchivePaths(missing);
    hog.ReadHOGs(missing, nullptr);
    EXPECT_EQ(missing.D3HogPath, "");
    EXPECT_EQ(missing.Extra13Path, "");
}

TEST(Hog, DirectoryCountsThatTheFileCannotHoldAreRefused) {
    Bytes bytes = WriteHOG({{"x.ogf", Tiny(1)}});
    bytes[4] = 0xFF;
    bytes[5] = 0xFF;
    bytes[6] = 0xFF;
    bytes[7] = 0x7F;
    std::vector<HogDirectoryEntry> entries;
    test::ResetLargestAllocation();
    EXPECT_EQ(ReadHogEntries(bytes, entries), HogStatus::NotHog);
    EXPECT_LT(test::LargestAllocation(), 4096u);
    bytes[7] = 0xFF;  // negative
    EXPECT_EQ(ReadHogEntries(bytes, entries), HogStatus::NotHog);
    EXPECT_TRUE(entries.empty());
}

TEST(Hog, TextureLookupFollowsTheOrderAndIgnoresCase) {
    test::TempDir dir("hog_order");
    std::filesystem::create_directories(dir / "Game" / "missions");
    std::filesystem::create_directories(dir / "ogf");
    // Directories out of order: the lookup must not rely on sorting.
    Write(dir / "Game" / "D3.HOG", WriteHOG({{"zeta.ogf", Tiny(1)},
                                             {"BRICK.OGF", Tiny(2)},
                                             {"brickwall.ogf", Tiny(3)},
                                             {"only_d3.ogf", Tiny(4)}}));
    Write(dir / "Game" / "EXTRA13.HOG", WriteHOG({{"brick.ogf", Tiny(5)}, {"x13.oaf", Tiny(6)}}));
    Write(dir / "Game" / "missions" / "Mine.MN3", WriteHOG({{"brick.ogf", Tiny(7)}}));
    Write(dir / "ogf" / "Brick.ogf", Tiny(8));

    Settings s;
    s.D3HogPath = (dir / "Game" / "d3.hog").string();  // found ignoring case
    s.MN3GAMPath = (dir / "Game" / "missions" / "Mine.MN3").string();
    s.OGFPath = (dir / "ogf").string();
    DeriveArchivePaths(s);
    clsHOG hog;
    hog.ReadHOGs(s, nullptr);
    ASSERT_TRUE(hog.Slots[1].Loaded && hog.Slots[2].Loaded && hog.Slots[3].Loaded);

    auto slotOf = [&](const char* name) {
        const TexLookup found = hog.GetTexIndex(name, s);
        if (found.index == kLooseImageIndex) return 0;
        if (found.index < 0) return -1;
        return static_cast<int>(hog.Textures[static_cast<std::size_t>(found.index)].Slot);
    };
    const TexLookup loose = hog.GetTexIndex("brick", s);
    EXPECT_EQ(loose.index, kLooseImageIndex);
    EXPECT_EQ(loose.path, (dir / "ogf" / "Brick.ogf").string());
    s.OGFPath.clear();
    EXPECT_EQ(slotOf("brick"), 3);
    s.MN3GAMPath.clear();
    hog.ReadHOGs(s, nullptr);
    EXPECT_EQ(slotOf("BRICK"), 2);
    EXPECT_EQ(slotOf("only_d3"), 1);
    EXPECT_EQ(slotOf("zeta"), 1);
    EXPECT_EQ(slotOf("x13"), 2);
    EXPECT_EQ(slotOf("bric"), -1);
    EXPECT_EQ(slotOf(""), -1);
    const int d3 = hog.FindTexture("brick", 1);
    ASSERT_GE(d3, 0);
    EXPECT_EQ(EntryName(hog.Textures[static_cast<std::size_t>(d3)].Name), "brick.ogf");

    ArchiveReader reader(hog);
    const auto bytes = reader.Read(1, hog.Textures[static_cast<std::size_t>(d3)].Offset, 3);
    EXPECT_EQ(bytes, Tiny(2));

    // An archive removed after indexing no longer answers; the next one does.
    std::filesystem::remove(dir / "Game" / "EXTRA13.HOG");
    EXPECT_EQ(slotOf("brick"), 1);
    EXPECT_EQ(slotOf("x13"), -1);
}

TEST(Progress, LongTextsAreShortenedAroundTheFirstBlank) {
    EXPECT_EQ(ShortenProgressText("Reading d3.hog..."), "Reading d3.hog...");
    const std::string noBlank(40, 'x');
    EXPECT_EQ(ShortenProgressText(noBlank), std::string(30, 'x'));
    EXPECT_EQ(ShortenProgressText("Reading /home/someone/games/descent3/missions/big.mn3..."),
              "Reading ...escent3/missions/big.mn3...");
    int percent = 140;
    ShowProgress(nullptr, percent, "");
    EXPECT_EQ(percent, 100);
    EXPECT_EQ(PercentOf(1, 8), 12);  // 12.5 rounds to even
    EXPECT_EQ(PercentOf(3, 8), 38);  // 37.5 rounds to even
}

}  // namespace
}  // namespace mw
