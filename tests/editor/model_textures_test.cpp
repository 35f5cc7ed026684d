// The model's textures beside the document: resolved against game data without touching the
// model, and told again when the model or the game data changes.
#include "editor/model_textures.h"

#include <gtest/gtest.h>
#include <QSignalSpy>

#include "support/sample_document.h"

namespace mw {
namespace {

class ModelTexturesTest : public ::testing::Test {
  protected:
    ModelTexturesTest() { test::ReadSampleGameData(settings_, game_); }
    Settings settings_;
    GameData game_;
    test::SampleDocument sample_;
};

TEST_F(ModelTexturesTest, AGameNameInOtherCapitalsResolvesWithoutChangingTheModel) {
    Document& doc = sample_.doc;
    // The table knows this texture as "Sample Wing Stripes", image ship_wing.ogf.
    doc.model().Textures[1].Name = "sample WING stripes";
    doc.ResetModel(true);
    const auto before = test::SavedBytes(doc.model());

    ModelTextures textures(doc, game_, settings_);
    QSignalSpy changed(&textures, &ModelTextures::texturesChanged);
    textures.Reload();
    EXPECT_EQ(changed.count(), 1);
    ASSERT_EQ(textures.count(), 3);
    EXPECT_EQ(textures.loaded().Names[1].FileName, "ship_wing");
    EXPECT_EQ(textures.loaded().Names[1].GameName, "Sample Wing Stripes");
    EXPECT_TRUE(textures.loaded().Resolved[1].Decoded);
    EXPECT_EQ(textures.GameName(1), "Sample Wing Stripes");
    EXPECT_EQ(textures.ImageName(1), "ship_wing.ogf");
    EXPECT_EQ(textures.SizeText(1),
              QString("%1x%2").arg(textures.picture(1)->Width).arg(textures.picture(1)->Height));

    // The model is as it was: same bytes, nothing to undo, nothing unsaved.
    EXPECT_EQ(doc.model().Textures[1].Name, "sample WING stripes");
    EXPECT_EQ(test::SavedBytes(doc.model()), before);
    EXPECT_EQ(doc.undoStack().count(), 0);
    EXPECT_FALSE(doc.isModified());
}

TEST_F(ModelTexturesTest, FollowsTheDocumentAndKeepsPlaceholdersForWhatIsMissing) {
    Document& doc = sample_.doc;
    ModelTextures textures(doc, game_, settings_);
    QSignalSpy changed(&textures, &ModelTextures::texturesChanged);
    doc.model().Textures.push_back({"", "nowhere", ""});
    doc.ResetModel(true);
    EXPECT_EQ(changed.count(), 1);
    ASSERT_EQ(textures.count(), 4);
    EXPECT_FALSE(textures.loaded().Resolved[3].Decoded);
    EXPECT_EQ(textures.picture(3)->Width, kMissingTextureSize);
    EXPECT_EQ(textures.SizeText(3), "");
    EXPECT_EQ(textures.ImageName(3), "");
    EXPECT_EQ(textures.picture(4), nullptr);

    // The glow comes from the game data ("thrustball" is in the sample's archive).
    QSignalSpy glow(&textures, &ModelTextures::glowChanged);
    textures.LoadGlow();
    EXPECT_EQ(glow.count(), 1);
    EXPECT_GT(textures.glow().Width, 0);
    EXPECT_EQ(textures.glow().Pixels.size(),
              static_cast<std::size_t>(textures.glow().Width * textures.glow().Height));
}

}  // namespace
}  // namespace mw
