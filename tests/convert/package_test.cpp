// Packaging a model: textures the game data has stay out, the others are copied or encoded
// with a table page each, and the package, read as a mission archive, resolves them all.
#include "convert/package.h"

#include <gtest/gtest.h>
#include <QImage>

#include "gamedata/hog_writer.h"
#include "gamedata/ogf_writer.h"
#include "model/file_io.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "sample_gamedata.h"
#include "sample_model.h"
#include "support/engine_pages.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

class PackageTest : public ::testing::Test {
  protected:
    PackageTest() : dir_("package") {
        std::filesystem::create_directories(dir_ / "game");
        std::filesystem::create_directories(dir_ / "paint");
        EXPECT_EQ(WriteFileReplacing(dir_ / "game/d3.hog", BuildSampleArchive()), "");
        settings_.D3HogPath = (dir_ / "game/d3.hog").string();
        DeriveArchivePaths(settings_);
        game_.Hog.ReadHOGs(settings_, nullptr);
        game_.Gam.ReadGAMs(game_.Hog, settings_, nullptr, nullptr);

        // The sample's three textures are in the game data; three more are new.
        ModelData model = BuildSampleModel();
        for (const char* name : {"new_paint", "copied_tex", "gone_tex"})
            model.Textures.push_back({"", name, name});
        EXPECT_EQ(SaveOOF(model, (dir_ / "Cutter.oof").string()), "");
        // A picture of a side that is no power of two, beside the model (in other capitals).
        QImage paint(48, 64, QImage::Format_RGBA8888);
        paint.fill(QColor(200, 40, 40, 255));
        EXPECT_TRUE(paint.save(QString::fromStdString((dir_ / "New_Paint.PNG").string())));
        // A finished image in the textures folder.
        RgbaImage stripes{32, 32, std::vector<std::uint32_t>(32 * 32, 0xFF00FF00u)};
        EXPECT_EQ(WriteFileReplacing(dir_ / "paint/copied_tex.ogf",
                                     EncodeOGF(stripes, {OgfFormat::Auto, -1, "copied_tex.ogf"})),
                  "");
    }
    test::TempDir dir_;
    Settings settings_;
    GameData game_;
};

TEST_F(PackageTest, AddsWhatTheGameLacksAndTheGameDataThenResolvesIt) {
    const PackageResult result = WritePackage(dir_ / "Cutter.oof", dir_ / "cutter.mn3", game_,
                                              settings_, {dir_ / "paint"}, 0);
    ASSERT_EQ(result.Error, "");
    ASSERT_EQ(result.Textures.size(), 6u);
    for (int t = 0; t < 3; ++t)
        EXPECT_EQ(result.Textures[static_cast<std::size_t>(t)].Source, PackageSource::InGame);
    EXPECT_EQ(result.Textures[3].Source, PackageSource::EncodedImage);
    EXPECT_EQ(result.Textures[4].Source, PackageSource::CopiedImage);
    EXPECT_EQ(result.Textures[5].Source, PackageSource::Missing);
    EXPECT_EQ(result.Missing, 1);
    EXPECT_EQ(result.Entries, (std::vector<std::string>{"Cutter.oof", "new_paint.ogf",
                                                        "copied_tex.ogf", "cutter.gam"}));
    ASSERT_EQ(result.Warnings.size(), 1u);  // 48 x 64 scaled to 64 x 64
    EXPECT_NE(result.Warnings[0].find("scaled to 64x64"), std::string::npos);

    // The package as the mission archive: the model's new textures come from it, with the
    // pages' names and flags.
    Settings withPackage = settings_;
    withPackage.MN3GAMPath = (dir_ / "cutter.mn3").string();
    GameData game;
    game.Hog.ReadHOGs(withPackage, nullptr);
    game.Gam.ReadGAMs(game.Hog, withPackage, nullptr, nullptr);
    ASSERT_EQ(game.Hog.Models.size(), 2u);  // the sample archive's ship, and the package's
    ModelData model;
    ASSERT_EQ(readOOF(model, *ReadFileBytes(dir_ / "Cutter.oof")), ResultCode::Success);
    struct Uploads : TextureUploader {
        void AllocModelTextures(int) override {}
        void UploadModelTexture(int, int, int, const std::uint32_t*) override {}
    } uploads;
    LoadedTextures loaded;
    LoadModelTextures(model, "Cutter.oof", game, withPackage, MakeMissingTexture(1), uploads,
                      loaded);
    for (std::size_t t : {3u, 4u}) {
        EXPECT_TRUE(loaded.Names[t].InTable) << t;
        EXPECT_EQ(loaded.Resolved[t].Source, TextureSource::Mission) << t;
        EXPECT_TRUE(loaded.Resolved[t].Decoded) << t;
        EXPECT_EQ(loaded.Slots[t].Gam.GamFlags & (1u << 12), 1u << 12);  // an object texture
    }
    EXPECT_EQ(loaded.Slots[3].Width, 64);
    EXPECT_EQ(loaded.Slots[4].Width, 32);
    EXPECT_EQ(loaded.Resolved[5].Source, TextureSource::Missing);

    // Packaging again from the same files gives the same archive.
    std::filesystem::create_directories(dir_ / "again");
    ASSERT_EQ(WritePackage(dir_ / "Cutter.oof", dir_ / "again/cutter.mn3", game_, settings_,
                           {dir_ / "paint"}, 0)
                  .Error,
              "");
    EXPECT_EQ(ReadFileBytes(dir_ / "again/cutter.mn3"), ReadFileBytes(dir_ / "cutter.mn3"));
}

TEST_F(PackageTest, AModelThatCannotBeReadWritesNothing) {
    EXPECT_EQ(WriteFileReplacing(dir_ / "bad.oof", std::vector<std::uint8_t>{'P', 'S', 'P'}), "");
    const PackageResult result =
        WritePackage(dir_ / "bad.oof", dir_ / "bad.mn3", game_, settings_, {}, 0);
    EXPECT_NE(result.Error, "");
    EXPECT_FALSE(std::filesystem::exists(dir_ / "bad.mn3"));
}

// The table a package holds, read the way the game reads it.
test::EngineTable PackageTable(const std::filesystem::path& archive, const std::string& table) {
    const auto files = ReadHogFiles(*ReadFileBytes(archive));
    for (const HogFile& f : *files) {
        if (f.Name == table) return test::ReadAsEngine(f.Data);
    }
    test::EngineTable none;
    none.Error = "no " + table + " in the archive";
    return none;
}

TEST_F(PackageTest, TheTableIsNamedAfterTheArchiveAndReadsAsTheGameReadsIt) {
    ASSERT_EQ(WritePackage(dir_ / "Cutter.oof", dir_ / "MyMission.mn3", game_, settings_,
                           {dir_ / "paint"}, 0)
                  .Error,
              "");
    const test::EngineTable table = PackageTable(dir_ / "MyMission.mn3", "MyMission.gam");
    ASSERT_EQ(table.Error, "");
    ASSERT_EQ(table.Pages.size(), 2u);
    EXPECT_EQ(table.Pages[0].Name, "new_paint");
    // 48 x 64 scaled to 64 x 64: the 64 size class; the copied 32 x 32 image: the 32 class.
    EXPECT_EQ(table.Pages[0].Flags, (1u << 12) | (1u << 13));
    EXPECT_EQ(table.Pages[1].Flags, (1u << 12) | (1u << 15));
}

TEST_F(PackageTest, AnAnimationPlaysAtItsOwnFrameTimeAndSizeFlagsTakeTheLargerSide) {
    std::vector<RgbaImage> frames(4, RgbaImage{32, 128, std::vector<std::uint32_t>(32 * 128, ~0u)});
    ASSERT_EQ(WriteFileReplacing(dir_ / "paint/copied_tex.oaf",
                                 EncodeOAF(frames, {OgfFormat::Auto, -1, "copied_tex.oaf"}, 0.2f)),
              "");
    std::filesystem::remove(dir_ / "paint/copied_tex.ogf");
    ASSERT_EQ(
        WritePackage(dir_ / "Cutter.oof", dir_ / "anim.mn3", game_, settings_, {dir_ / "paint"}, 0)
            .Error,
        "");
    const test::EngineTable table = PackageTable(dir_ / "anim.mn3", "anim.gam");
    ASSERT_EQ(table.Error, "");
    ASSERT_EQ(table.Pages.size(), 2u);
    EXPECT_EQ(table.Pages[1].Bitmap, "copied_tex.oaf");
    EXPECT_FLOAT_EQ(table.Pages[1].Speed, 0.8f);  // 4 frames of 0.2 s
    // 32 x 128: loaded at 128 (no size flag), not scaled down to 32.
    EXPECT_EQ(table.Pages[1].Flags, (1u << 12) | (1u << 6));
}

TEST_F(PackageTest, ATextureNameTheGameCannotLoadWritesNothing) {
    ModelData model = BuildSampleModel();
    const std::string longName(31, 'x');
    model.Textures.push_back({"", longName, longName});
    ASSERT_EQ(SaveOOF(model, (dir_ / "long.oof").string()), "");
    QImage paint(32, 32, QImage::Format_RGBA8888);
    paint.fill(QColor(1, 2, 3, 255));
    ASSERT_TRUE(paint.save(QString::fromStdString((dir_ / (longName + ".png")).string())));
    const PackageResult result =
        WritePackage(dir_ / "long.oof", dir_ / "long.mn3", game_, settings_, {}, 0);
    EXPECT_NE(result.Error.find("longer than the 29 characters"), std::string::npos)
        << result.Error;
    EXPECT_FALSE(std::filesystem::exists(dir_ / "long.mn3"));
}

}  // namespace
}  // namespace mw
