#include "gamedata/texture_loader.h"

#include <gtest/gtest.h>

#include "gamedata_writers.h"
#include "model/file_io.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "sample_gamedata.h"
#include "sample_model.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

class RecordingUploader : public TextureUploader {
  public:
    void AllocModelTextures(int count) override { allocated.push_back(count); }
    void UploadModelTexture(int t, int w, int h, const std::uint32_t* pixels) override {
        uploads.push_back({t, w, h, std::vector<std::uint32_t>(pixels, pixels + w * h)});
    }
    struct Upload {
        int texture, width, height;
        std::vector<std::uint32_t> pixels;
    };
    std::vector<int> allocated;
    std::vector<Upload> uploads;
};

class TextureLoaderTest : public ::testing::Test {
  protected:
    TextureLoaderTest() : dir_("loader"), missing_(MakeMissingTexture(7)) {}

    void Index(const Bytes& d3) {
        EXPECT_EQ(WriteFileReplacing(dir_ / "d3.hog", d3), "");
        settings_.D3HogPath = (dir_ / "d3.hog").string();
        DeriveArchivePaths(settings_);
        data_.Hog.ReadHOGs(settings_, nullptr);
        data_.Gam.ReadGAMs(data_.Hog, settings_, nullptr, nullptr);
    }
    void Load(ModelData& model, const std::string& path = "/models/ship.oof") {
        LoadModelTextures(model, path, data_, settings_, missing_, uploader_, loaded_);
    }

    test::TempDir dir_;
    Settings settings_;
    GameData data_;
    std::vector<std::uint32_t> missing_;
    RecordingUploader uploader_;
    LoadedTextures loaded_;
};

TEST_F(TextureLoaderTest, TheSampleResolvesEveryTexture) {
    Index(BuildSampleArchive());
    ModelData model;
    ASSERT_EQ(readOOF(model, *ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof")),
              ResultCode::Success);
    Load(model);
    ASSERT_EQ(uploader_.allocated, (std::vector<int>{3}));
    ASSERT_EQ(uploader_.uploads.size(), 3u);
    for (const auto& r : loaded_.Resolved) {
        EXPECT_TRUE(r.Decoded);
        EXPECT_EQ(r.Source, TextureSource::D3);
    }
    EXPECT_EQ(loaded_.Names[1].GameName, "Sample Wing Stripes");
    EXPECT_EQ(model.Textures[1].GameName, "");  // the model keeps its own names
    EXPECT_EQ(loaded_.Slots[1].Gam.SlideTimeU(), 2.0f);
    EXPECT_EQ(loaded_.Slots[0].Width, 64);
    // The turret light is animated: all four frames are in the store, the last uploaded.
    EXPECT_EQ(loaded_.Slots[2].FrameCount, 4);
    EXPECT_EQ(loaded_.Frames.AnimatedCount, 1);
    EXPECT_EQ(loaded_.Frames.Pixels.size(), 4u * 32 * 32);
    const auto& last = uploader_.uploads[2].pixels;
    EXPECT_TRUE(std::equal(last.begin(), last.end(), loaded_.Frames.Pixels.begin() + 3 * 32 * 32));
    EXPECT_EQ(loaded_.ObjectKind, 1);
}

TEST_F(TextureLoaderTest, UnknownTexturesGetThePlaceholder) {
    Index(WriteHOG({{"other.ogf", WriteOGF({1, 1, {0xFF00FF00u}}, {})}}));
    ModelData model;
    model.Textures = {{"", "nowhere", "nowhere"}, {"", "", ""}};
    Load(model);
    ASSERT_EQ(uploader_.uploads.size(), 2u);
    for (const auto& u : uploader_.uploads) {
        EXPECT_EQ(u.width, 32);
        EXPECT_EQ(u.pixels, missing_);
    }
    EXPECT_EQ(loaded_.Resolved[0].Source, TextureSource::Missing);
    for (auto p : missing_)
        EXPECT_EQ(p >> 24, 255u);  // opaque
}

TEST_F(TextureLoaderTest, UndecodableImagesGetThePlaceholderToo) {
    Index(WriteHOG({{"broken.ogf", Bytes{0, 1, 2, 3}}}));
    ModelData model;
    model.Textures = {{"", "broken", "broken"}};
    Load(model);
    EXPECT_EQ(loaded_.Resolved[0].Source, TextureSource::D3);
    EXPECT_FALSE(loaded_.Resolved[0].Decoded);
    EXPECT_EQ(loaded_.Resolved[0].Status, OgfStatus::BadType);
    EXPECT_EQ(uploader_.uploads[0].pixels, missing_);
}

TEST_F(TextureLoaderTest, AlphaFollowsTheImageTheGamFlagsAndTheObjectKind) {
    GamWriter gam;
    gam.texture({"Glass", "glass.ogf", 1, 0, 0, 0, 0x4000});
    gam.object(ObjectPage("Turret", {"turret.oof", "", ""}, 2));
    Index(
        WriteHOG({{"glass.ogf", WriteOGF({1, 1, {0xFFFFFFFFu}}, {})}, {"table.gam", gam.bytes()}}));
    ModelData model;
    model.Textures = {{"", "glass", "glass"}};
    Load(model, "/models/ship.oof");
    EXPECT_TRUE(loaded_.Slots[0].HasAlpha);  // opaque image, blended by its flags
    Load(model, "/models/Turret.OOF");
    EXPECT_FALSE(loaded_.Slots[0].HasAlpha);  // never on an object of kind 2
}

TEST_F(TextureLoaderTest, AModelWithoutTexturesLeavesNothing) {
    Index(BuildSampleArchive());
    ModelData model;
    Load(model);
    EXPECT_TRUE(uploader_.allocated.empty());
    EXPECT_TRUE(loaded_.Slots.empty());
    EXPECT_TRUE(loaded_.Frames.Pixels.empty());
}

TEST_F(TextureLoaderTest, LooseImagesOverrideTheArchives) {
    Index(BuildSampleArchive());
    std::filesystem::create_directories(dir_ / "loose");
    ASSERT_EQ(WriteFileReplacing(dir_ / "loose" / "SHIP_WING.ogf",
                                 WriteOGF({2, 1, {0xFF0000FFu, 0xFF0000FFu}}, {})),
              "");
    settings_.OGFPath = (dir_ / "loose").string() + "/";
    ModelData model;
    ASSERT_EQ(readOOF(model, *ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof")),
              ResultCode::Success);
    Load(model);
    EXPECT_EQ(loaded_.Resolved[1].Source, TextureSource::Loose);
    EXPECT_EQ(uploader_.uploads[1].width, 2);
    EXPECT_EQ(loaded_.Resolved[0].Source, TextureSource::D3);
}

}  // namespace
}  // namespace mw
