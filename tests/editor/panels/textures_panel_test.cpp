// The textures panel's list and labels over the sample's game data (no picture: that needs an
// OpenGL display and is tested with the main window).
#include "editor/panels/textures_panel.h"
#include "editor/model_textures.h"

#include <gtest/gtest.h>
#include <QLabel>
#include <QListWidget>

#include "gamedata/texture_loader.h"
#include "model/file_io.h"
#include "sample_gamedata.h"
#include "support/sample_document.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

TEST(TextureListEntryTest, MarksWhatTheGameDataDidNotResolve) {
    EXPECT_EQ(TextureListEntry("Sample Hull", "ship_hull"), "Sample Hull");
    EXPECT_EQ(TextureListEntry("", "ship_hull"), "*ship_hull");
    EXPECT_EQ(TextureListEntry("Lava", ""), "*Lava");
    EXPECT_EQ(TextureListEntry("", ""), "");
    // A texture a loose image would bring (a package would take it along).
    EXPECT_EQ(TextureListEntry("", "new_paint", true), "+new_paint");
    EXPECT_EQ(TextureListEntry("", "caf\xe9"), QString("*caf") + QChar(0xe9));
}

class TexturesPanelTest : public ::testing::Test {
  protected:
    TexturesPanelTest() : dir_("textures-panel") {
        EXPECT_EQ(WriteFileReplacing(dir_ / "d3.hog", BuildSampleArchive()), "");
        EXPECT_EQ(WriteFileReplacing(dir_ / "Loose_Tex.OGF", ReadArchiveImage()), "");
        settings_.D3HogPath = (dir_ / "d3.hog").string();
        settings_.OGFPath = dir_.path().string() + "/";
        DeriveArchivePaths(settings_);
        game_.Hog.ReadHOGs(settings_, nullptr);
        game_.Gam.ReadGAMs(game_.Hog, settings_, nullptr, nullptr);
        ModelData& m = sample_.doc.model();
        m.Textures.push_back({"", "nowhere_tex", ""});
        m.Textures.push_back({"Lava Rock", "", ""});
        m.Textures.push_back({"", "loose_tex", ""});
        sample_.doc.ResetModel(true);
        panel_.show();
    }
    // Any valid image will do for the loose file: the hull's, from the archive.
    static std::vector<std::uint8_t> ReadArchiveImage() {
        GameData data;
        test::TempDir dir("textures-panel-hull");
        WriteFileReplacing(dir / "d3.hog", BuildSampleArchive());
        Settings s;
        s.D3HogPath = (dir / "d3.hog").string();
        DeriveArchivePaths(s);
        data.Hog.ReadHOGs(s, nullptr);
        const int t = data.Hog.FindTexture("ship_hull", kSlotD3);
        const HogTextureEntry& e = data.Hog.Textures[static_cast<std::size_t>(t)];
        ArchiveReader reader(data.Hog);
        return *reader.Read(kSlotD3, e.Offset, e.Length);
    }
    QString Label(const char* name) { return panel_.findChild<QLabel*>(name)->text(); }
    void Choose(int row) { panel_.findChild<QListWidget*>("lstTextures")->setCurrentRow(row); }

    test::TempDir dir_;
    Settings settings_;
    GameData game_;
    test::SampleDocument sample_;
    ModelTextures textures_{sample_.doc, game_, settings_};
    TexturesPanel panel_{sample_.doc, textures_, false};
};

TEST_F(TexturesPanelTest, ListsGameNamesAndMarksUnresolvedTextures) {
    const auto* list = panel_.findChild<QListWidget*>("lstTextures");
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts << list->item(i)->text();
    EXPECT_EQ(texts, (QStringList{"Sample Hull", "Sample Wing Stripes", "Sample Turret Light",
                                  "*nowhere_tex", "*Lava Rock", "+loose_tex"}));
    EXPECT_EQ(Label("lblTexName_1"), "");  // nothing selected yet
}

TEST_F(TexturesPanelTest, ShowsImageNamesAndSizes) {
    Choose(0);
    EXPECT_EQ(Label("lblTexName_0"), "Sample Hull");
    EXPECT_EQ(Label("lblTexName_1"), "ship_hull.ogf");
    EXPECT_EQ(Label("lblTextureSize"), "64x64");
    Choose(2);
    EXPECT_EQ(Label("lblTexName_1"), "ship_turret.oaf");  // animated
    EXPECT_EQ(Label("lblTextureSize"), "32x32");
    Choose(3);
    EXPECT_EQ(Label("lblTexName_1"), "");
    EXPECT_EQ(Label("lblTextureSize"), "");
    Choose(4);
    EXPECT_EQ(Label("lblTexName_1"), "Lava Rock.ogf");  // not found: the game name
    EXPECT_EQ(Label("lblTextureSize"), "");
    Choose(5);
    EXPECT_EQ(Label("lblTexName_1"), "Loose_Tex.OGF");  // the loose file as it is named
    EXPECT_EQ(Label("lblTextureSize"), "64x64");
    // A new model empties the list and the labels.
    sample_.doc.model().Textures.clear();
    sample_.doc.ResetModel(true);
    EXPECT_EQ(panel_.findChild<QListWidget*>("lstTextures")->count(), 0);
    EXPECT_EQ(Label("lblTexName_0"), "");
}

}  // namespace
}  // namespace mw
