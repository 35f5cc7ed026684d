#include "gamedata/ini_file.h"

#include <gtest/gtest.h>

#include "gamedata/settings.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

TEST(IniFile, KeysAreFoundIgnoringCaseAndReplacedInPlace) {
    clsIniFile ini;
    ini.SetText("; my notes\n[View Settings]\nviewmode = 2\nMyOwnKey=keep me\n\n[Other]\nx=1\n");
    EXPECT_EQ(ini.GetInt("VIEW SETTINGS", "ViewMode", 0), 2);
    ini.WriteInt("view settings", "ViewMode", 3);
    ini.WriteString("View Settings", "ViewType", "Textured");
    ini.WriteString("New Section", "Key", "  padded  ");
    EXPECT_EQ(ini.Text(),
              "; my notes\n[View Settings]\nViewMode=3\nMyOwnKey=keep me\nViewType=Textured\n\n"
              "[Other]\nx=1\n[New Section]\nKey=padded\n");
}

TEST(IniFile, TypedReads) {
    clsIniFile ini;
    ini.SetText("[S]\nb2=2\nb0=0\nbig=65536\nneg=-3\ntext=12abc\nf=0,5\nbad=x\nempty=\n");
    EXPECT_TRUE(ini.GetBoolean("S", "b2", false));
    EXPECT_FALSE(ini.GetBoolean("S", "b0", true));
    EXPECT_FALSE(ini.GetBoolean("S", "big", true));  // low 16 bits are 0
    EXPECT_TRUE(ini.GetBoolean("S", "missing", true));
    EXPECT_FALSE(ini.GetBoolean("S", "missing", false));
    EXPECT_EQ(ini.GetInt("S", "neg", 0), -3);
    EXPECT_EQ(ini.GetInt("S", "text", 0), 12);
    EXPECT_EQ(ini.GetInt("S", "bad", 9), 0);
    EXPECT_EQ(ini.GetSingle("S", "f", 1.0f), 0.5f);  // a comma works as the separator
    EXPECT_EQ(ini.GetSingle("S", "bad", 1.5f), 1.5f);
    EXPECT_EQ(ini.GetString("S", "empty", "dflt"), "dflt");
    ini.WriteString("S", "long", std::string(300, 'a'));
    EXPECT_EQ(ini.GetString("S", "long", "").size(), 254u);
    // Cut where a blank falls: the value is trimmed again, so writing it back and reading it
    // gives the same value (found by fuzzing).
    ini.WriteString("S", "cut", std::string(253, 'b') + "  tail" + std::string(50, 'c'));
    const std::string cut = ini.GetString("S", "cut", "");
    EXPECT_EQ(cut, std::string(253, 'b'));
    ini.WriteString("S", "cut", cut);
    EXPECT_EQ(ini.GetString("S", "cut", ""), cut);
}

TEST(Settings, EdgeValuesReadAsDocumented) {
    clsIniFile ini;
    ini.SetText(
        "[View Settings]\nViewType=FLATSOLID\nViewMode=7\n"
        "[Effects]\nGlowEffects=2\nFacing=0\n"
        "[POFGEN Options]\nChunk Splits=4,0,4\nShading Mode=2.5\nScale=1e9\n"
        "[ORF Conversion Options]\nSpecial Face Size=0.05\n");
    Settings s;
    LoadSettings(ini, s);
    EXPECT_EQ(s.View, ViewType::FlatSolid);
    EXPECT_EQ(s.ViewMode, 0);
    EXPECT_TRUE(s.GlowEffects);
    EXPECT_FALSE(s.Facing);
    EXPECT_TRUE(s.TextureAnimation);  // missing: its default
    EXPECT_EQ(s.PofChunkSplits, (std::array<std::uint8_t, 3>{0, 0, 0}));
    EXPECT_EQ(s.PofShadingMode, 2);  // ties to even
    EXPECT_EQ(s.SpecialFaceSize, 0.1f);

    const auto splits = [](const char* text) {
        clsIniFile f;
        f.SetText(std::string("[POFGEN Options]\nChunk Splits=") + text + "\n");
        Settings t;
        LoadSettings(f, t);
        return t.PofChunkSplits;
    };
    EXPECT_EQ(splits("4,4"), (std::array<std::uint8_t, 3>{0, 0, 0}));
    EXPECT_EQ(splits("2,3,4"), (std::array<std::uint8_t, 3>{2, 3, 4}));
    EXPECT_EQ(splits("2,300,4"), (std::array<std::uint8_t, 3>{0, 0, 0}));

    clsIniFile other;
    other.SetText("[View Settings]\nViewType=\n[ORF Conversion Options]\nSpecial Face Size=250\n");
    Settings t;
    LoadSettings(other, t);
    EXPECT_EQ(t.View, ViewType::Textured);
    EXPECT_EQ(t.SpecialFaceSize, 100.0f);
    EXPECT_EQ(t.AutosaveSeconds, 60);  // missing: the defaults
    EXPECT_EQ(t.UndoLimit, 1000);

    clsIniFile recovery;
    recovery.SetText("[application]\nautosaveseconds=0\nUndoLimit=-4\n");
    Settings r;
    LoadSettings(recovery, r);
    EXPECT_EQ(r.AutosaveSeconds, 0);  // off
    EXPECT_EQ(r.UndoLimit, 1000);     // a negative limit is no limit the stack takes
    r.AutosaveSeconds = 90;
    r.UndoLimit = 250;
    clsIniFile written;
    SaveSettings(written, r, [](const std::string&) { return true; });
    EXPECT_NE(written.Text().find("AutosaveSeconds=90"), std::string::npos);
    Settings back;
    LoadSettings(written, back);
    EXPECT_EQ(back.AutosaveSeconds, 90);
    EXPECT_EQ(back.UndoLimit, 250);
}

TEST(Settings, RecentFilesKeepOnlyModels) {
    clsIniFile ini;
    ini.SetText("[MRU]\nFile1=/home/me/notes.txt\nFile2=/home/me/ship.OOF\nFile4=/r/room.orf\n");
    Settings s;
    LoadSettings(ini, s);
    EXPECT_EQ(s.RecentFiles, (std::vector<std::string>{"/home/me/ship.OOF", "/r/room.orf"}));
}

TEST(Settings, WrittenAndReadBackTheSameWithUserLinesKept) {
    test::TempDir dir("settings");
    clsIniFile ini(dir / "MWUIData.ini");
    ini.SetText("; written by hand\n[Path Settings]\nMyTool=/opt/tool\n[My Own]\nkeep=yes\n");
    Settings s;
    s.D3HogPath = "/games/d3/d3.hog";
    s.OGFPath = "/games/d3/ogf/";
    s.View = ViewType::SmoothSolid;
    s.ViewMode = 2;
    s.ThreeDMode = true;
    s.ViewPoints = false;
    s.RecentFiles = {"/m/a.oof", "/m/gone.oof", "/m/b.orf"};
    s.PofScale = 0.3f;
    s.PofShadingMode = 200;
    s.PofChunkSplits = {1, 2, 3};
    s.PofCapitalShips = true;
    s.CombineRooms = false;
    s.SpecialFaceSize = 2.75f;
    SaveSettings(ini, s, [](const std::string& p) { return p.find("gone") == std::string::npos; });
    ASSERT_TRUE(ini.Save());

    clsIniFile again(dir / "MWUIData.ini");
    ASSERT_TRUE(again.Load());
    Settings back;
    LoadSettings(again, back);
    EXPECT_EQ(back.D3HogPath, s.D3HogPath);
    EXPECT_EQ(back.OGFPath, s.OGFPath);
    EXPECT_EQ(back.View, s.View);
    EXPECT_EQ(back.ViewMode, 2);
    EXPECT_TRUE(back.ThreeDMode);
    EXPECT_FALSE(back.ViewPoints);
    EXPECT_EQ(back.RecentFiles, (std::vector<std::string>{"/m/a.oof", "/m/b.orf"}));
    EXPECT_EQ(back.PofScale, 0.3f);
    EXPECT_EQ(back.PofShadingMode, 200);
    EXPECT_EQ(back.PofChunkSplits, s.PofChunkSplits);
    EXPECT_TRUE(back.PofCapitalShips);
    EXPECT_FALSE(back.CombineRooms);
    EXPECT_EQ(back.SpecialFaceSize, 2.75f);
    EXPECT_EQ(again.Find("My Own", "keep"), "yes");
    EXPECT_EQ(again.Find("Path Settings", "MyTool"), "/opt/tool");
    EXPECT_EQ(again.Find("Application", "Name"), "Meshwright");
    EXPECT_TRUE(again.Text().starts_with("; written by hand\n"));
}

TEST(Settings, DerivedArchivePaths) {
    Settings s;
    s.D3HogPath = "/Games/D3/D3.HOG";
    s.OGFPath = "C:\\textures";
    DeriveArchivePaths(s);
    EXPECT_EQ(s.Extra13Path, "/Games/D3/Extra13.hog");
    EXPECT_EQ(s.OGFPath, "C:/textures/");
    Settings bare;
    bare.D3HogPath = "d3.hog";
    DeriveArchivePaths(bare);
    EXPECT_EQ(bare.D3HogPath, "");
    EXPECT_EQ(bare.Extra13Path, "");
}

}  // namespace
}  // namespace mw
