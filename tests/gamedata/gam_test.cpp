#include "gamedata/gam.h"

#include <gtest/gtest.h>

#include "gamedata_writers.h"
#include "model/file_io.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

class Messages : public MessageSink {
  public:
    void Information(const std::string& text) override { shown.push_back(text); }
    std::vector<std::string> shown;
};

TEST(Gam, TexturePagesGiveNamesFilesAndProperties) {
    GamWriter w;
    w.otherPage(3, 20);
    w.texture({"Lava Rock", "Lava01.OAF", 0.5f, 2.0f, 1.5f, -3.0f, 0x4000});
    w.object(ObjectPage("Pyro-GL", {"Pyro.oof", "pyro_lo.OOF", ""}, 2, 25, 7));
    w.object(ObjectPage("Old Thing", {"old.oof", "", ""}, 3, 17, 2));
    w.object(ObjectPage("Mid Thing", {"mid.oof", "", ""}, 4, 18, 2));
    w.object(ObjectPage("Newer Thing", {"new.oof", "", ""}, 5, 24, 2));
    clsGAM gam;
    gam.ReadGamTable(w.bytes(), 1000, 2, nullptr);
    ASSERT_EQ(gam.Textures.size(), 1u);
    const GamTextureEntry& t = gam.Textures[0];
    EXPECT_EQ(t.TexName, "Lava Rock");
    EXPECT_EQ(t.FileName, "lava01");
    EXPECT_EQ(t.Source, 2);
    EXPECT_EQ(t.PropertyPos, 1000u + 25 + 5 + 2 + 10 + 11 + 1);
    EXPECT_EQ(t.Properties.Alpha(), 0.5f);
    EXPECT_EQ(t.Properties.AnimationTime(), 2.0f);
    EXPECT_EQ(t.Properties.SlideTimeU(), 1.5f);
    EXPECT_EQ(t.Properties.SlideTimeV(), -3.0f);
    EXPECT_EQ(t.Properties.GamFlags, 0x4000u);
    EXPECT_EQ(t.Properties.Extra, 0u);  // the damage
    ASSERT_EQ(gam.Objects.size(), 4u);
    EXPECT_EQ(gam.Objects[0].ObjName, "pyro-gl");
    EXPECT_EQ(gam.Objects[0].Model2, "pyro_lo.oof");
    const std::uint8_t kinds[] = {2, 3, 4, 5};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(gam.Objects[i].Kind, kinds[i]) << i;
    EXPECT_EQ(gam.GetGAMOBJInfo("C:\\Models\\Pyro.OOF"), 2);
    EXPECT_EQ(gam.GetGAMOBJInfo("/models/PYRO_LO.oof"), 2);
    EXPECT_EQ(gam.GetGAMOBJInfo("/models/pyro.orf"), 0);
    EXPECT_EQ(gam.GetGAMOBJInfo("/models/other.oof"), 0);
}

TEST(Gam, NegativePageLengthEndsTheTable) {
    GamWriter w;
    w.texture({"a", "a.ogf"});
    Bytes bytes = w.bytes();
    const Bytes stop{1, 0xFF, 0xFF, 0xFF, 0xFF};
    bytes.insert(bytes.end(), stop.begin(), stop.end());
    GamWriter more;
    more.texture({"b", "b.ogf"});
    bytes.insert(bytes.end(), more.bytes().begin(), more.bytes().end());
    clsGAM gam;
    gam.ReadGamTable(bytes, 0, 1, nullptr);
    EXPECT_EQ(gam.Textures.size(), 1u);
}

TEST(Gam, ModelTexturesTakeTheirGameNamesAndProperties) {
    GamWriter w;
    w.texture({"Brick Wall", "brick01.ogf", 1, 0, 0, 0, 7});
    w.texture({"Lava", "lava01.oaf", 1, 4, 0, 0, 9});
    w.texture({"Grate", "grate.ogf", 1, 0, 0, 0, 11});
    clsGAM gam;
    gam.ReadGamTable(w.bytes(), 0, 1, nullptr);
    ModelData m;
    m.Textures = {{"", "brick01", "brick01"},  // file name
                  {"", "LAVA", "LAVA"},        // game name in other capitals
                  {"Grate", "", ""},           // only a game name
                  {"GRATE", "", ""},           // a game name given as a file name
                  {"", "unknown", "unknown"}};
    const ModelData before = m;
    std::vector<TextureSlot> slots(m.Textures.size());
    const std::vector<TextureNames> names = gam.GetGAMTexInfo(m, slots);
    ASSERT_EQ(names.size(), 5u);
    EXPECT_EQ(names[0].GameName, "Brick Wall");
    EXPECT_EQ(names[0].FileName, "brick01");
    EXPECT_EQ(slots[0].Gam.GamFlags, 7u);
    EXPECT_EQ(names[1].GameName, "Lava");
    EXPECT_EQ(names[1].FileName, "lava01");
    EXPECT_EQ(slots[1].Gam.AnimationTime(), 4.0f);
    EXPECT_EQ(names[2].FileName, "grate");
    EXPECT_EQ(names[3].GameName, "Grate");
    EXPECT_EQ(names[3].FileName, "grate");
    EXPECT_EQ(slots[3].Gam.GamFlags, 11u);
    EXPECT_EQ(names[4].FileName, "unknown");
    EXPECT_EQ(names[4].GameName, "");
    EXPECT_EQ(slots[4].Gam.GamFlags, 0u);
    // The lookup leaves the model's own names as they were ("LAVA" stays "LAVA").
    for (std::size_t t = 0; t < m.Textures.size(); ++t) {
        EXPECT_EQ(m.Textures[t].Name, before.Textures[t].Name);
        EXPECT_EQ(m.Textures[t].GameName, before.Textures[t].GameName);
    }
    // A room's texture list takes the resolved names.
    ApplyTextureNames(m, names);
    EXPECT_EQ(m.Textures[1].Name, "lava01");
    EXPECT_EQ(m.Textures[1].GameName, "Lava");
}

TEST(Gam, TablesAccumulateInSlotOrderAndOverflowStopsReading) {
    test::TempDir dir("gam");
    GamWriter full;
    for (int i = 0; i < kMaxGamEntries; ++i)
        full.texture({"t" + std::to_string(i), "f.ogf"});
    GamWriter extra;
    extra.texture({"from extra13", "x.ogf"});
    GamWriter loose;
    loose.texture({"from loose", "l.ogf"});
    ASSERT_EQ(WriteFileReplacing(dir / "d3.hog", WriteHOG({{"table.gam", extra.bytes()}})), "");
    ASSERT_EQ(WriteFileReplacing(dir / "Extra13.hog", WriteHOG({{"big.gam", full.bytes()}})), "");
    ASSERT_EQ(WriteFileReplacing(dir / "Loose.GAM", loose.bytes()), "");

    Settings s;
    s.D3HogPath = (dir / "d3.hog").string();
    s.MN3GAMPath = (dir / "loose.gam").string();
    DeriveArchivePaths(s);
    clsHOG hog;
    hog.ReadHOGs(s, nullptr);
    clsGAM gam;
    Messages messages;
    gam.ReadGAMs(hog, s, nullptr, &messages);
    EXPECT_TRUE(gam.Overflow);
    ASSERT_EQ(gam.Textures.size(), static_cast<std::size_t>(kMaxGamEntries));
    EXPECT_EQ(gam.Textures[0].TexName, "from extra13");
    EXPECT_EQ(gam.Textures.back().TexName, "t4999");
    EXPECT_EQ(messages.shown, (std::vector<std::string>{"Maximum number of GAM entries reached!"}));

    // Without the overflow the loose table comes last; a missing one empties its path.
    ASSERT_EQ(WriteFileReplacing(dir / "Extra13.hog", WriteHOG({{"x.ogf", {1}}})), "");
    hog.ReadHOGs(s, nullptr);
    gam.ReadGAMs(hog, s, nullptr, &messages);
    ASSERT_EQ(gam.Textures.size(), 2u);
    EXPECT_EQ(gam.Textures[1].TexName, "from loose");
    EXPECT_EQ(gam.Textures[1].Source, kGamSourceLoose);
    s.MN3GAMPath = (dir / "gone.gam").string();
    gam.ReadGAMs(hog, s, nullptr, &messages);
    EXPECT_EQ(s.MN3GAMPath, "");
    EXPECT_EQ(gam.Textures.size(), 1u);
}

}  // namespace
}  // namespace mw
