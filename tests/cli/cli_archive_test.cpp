// meshwright-cli image encode, hog create/add/remove and package: exit statuses, messages,
// and nothing written on a refusal.
#include <gtest/gtest.h>
#include <QImage>

#include "model/file_io.h"
#include "sample_gamedata.h"
#include "support/cli_run.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

using test::Cli;

class CliArchiveTest : public ::testing::Test {
  protected:
    CliArchiveTest() : dir_("cli-archive") {}
    std::string Path(const std::string& name) const { return (dir_ / name).string(); }
    std::string Picture(const std::string& name, int w, int h, int alpha = 255) {
        QImage image(w, h, QImage::Format_RGBA8888);
        image.fill(QColor(10, 120, 250, alpha));
        EXPECT_TRUE(image.save(QString::fromStdString(Path(name))));
        return Path(name);
    }
    test::TempDir dir_;
};

TEST_F(CliArchiveTest, EncodeRefusesAndWarnsAsItShould) {
    const auto ok = Cli({"image", "encode", Picture("a.png", 16, 8, 128), Path("a.ogf")});
    ASSERT_EQ(ok.status, 0) << ok.err;
    const auto info = Cli({"image", Path("a.ogf"), "--json"});
    EXPECT_NE(info.out.find("\"type\":121"), std::string::npos);  // half alpha: 4444
    EXPECT_NE(info.out.find("\"mip_count\":5"), std::string::npos);
    EXPECT_EQ(
        Cli({"image", "encode", Path("a.png"), Path("b.ogf"), "--format", "1555", "--no-mipmaps"})
            .status,
        0);
    EXPECT_NE(Cli({"image", Path("b.ogf"), "--json"}).out.find("\"mip_count\":1"),
              std::string::npos);

    const auto odd = Cli({"image", "encode", Picture("odd.png", 30, 16), Path("odd.ogf")});
    EXPECT_EQ(odd.status, 65);
    EXPECT_NE(odd.err.find("power of two"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(Path("odd.ogf")));
    EXPECT_EQ(Cli({"image", "encode", Path("odd.png"), Path("odd.ogf"), "--resize"}).status, 0);
    EXPECT_NE(Cli({"image", Path("odd.ogf")}).out.find("32 x 16"), std::string::npos);

    EXPECT_EQ(Cli({"image", "encode", Path("absent.png"), Path("x.ogf")}).status, 66);
    EXPECT_EQ(Cli({"image", "encode", Path("a.png"), Path("x.ogf"), "--format", "565"}).status, 64);
    const auto big =
        Cli({"image", "encode", Picture("big.png", 512, 512), Path(std::string(40, 'n') + ".ogf")});
    EXPECT_EQ(big.status, 0);
    EXPECT_NE(big.err.find("above 256"), std::string::npos);
    EXPECT_NE(big.err.find("longer than the 34"), std::string::npos);

    // Frames of an animation share one size.
    EXPECT_EQ(Cli({"image", "encode-animation", Path("anim.oaf"), Path("a.png"), Path("a.png"),
                   Path("a.png")})
                  .status,
              0);
    EXPECT_NE(Cli({"image", Path("anim.oaf"), "--json"}).out.find("\"frames\":3"),
              std::string::npos);
    const auto mixed = Cli(
        {"image", "encode-animation", Path("mixed.oaf"), Path("a.png"), Picture("c.png", 8, 8)});
    EXPECT_EQ(mixed.status, 65);
    EXPECT_FALSE(std::filesystem::exists(Path("mixed.oaf")));
}

TEST_F(CliArchiveTest, HogCommandsReportWhatTheyDidOrRefuse) {
    ASSERT_EQ(WriteFileReplacing(dir_ / "one.ogf", std::vector<std::uint8_t>{1, 2, 3}), "");
    ASSERT_EQ(WriteFileReplacing(dir_ / "ONE.OGF.bak", std::vector<std::uint8_t>{4}), "");
    const auto created = Cli({"hog", "create", Path("t.hog"), Path("one.ogf")});
    EXPECT_EQ(created.status, 0);
    EXPECT_EQ(created.out, "added one.ogf\n");
    EXPECT_EQ(Cli({"hog", "remove", Path("t.hog"), "two.ogf"}).status, 65);
    EXPECT_EQ(Cli({"hog", "add", Path("t.hog"), Path("missing.ogf")}).status, 66);
    EXPECT_EQ(Cli({"hog", "remove", Path("t.hog"), "ONE.ogf"}).out, "removed one.ogf\n");
    EXPECT_NE(Cli({"hog", "list", Path("t.hog")}).out.find("0 files"), std::string::npos);
    EXPECT_EQ(Cli({"hog", "create", Path("t.hog")}).status, 64);
}

TEST_F(CliArchiveTest, PackageExitsByWhatIsMissing) {
    ASSERT_EQ(WriteFileReplacing(dir_ / "d3.hog", BuildSampleArchive()), "");
    const std::string ship = MW_SOURCE_DIR "/samples/ship.oof";
    const auto complete = Cli({"package", ship, Path("ship.mn3"), "--d3hog", Path("d3.hog")});
    EXPECT_EQ(complete.status, 0) << complete.err;
    EXPECT_NE(complete.out.find("texture ship_hull: game data"), std::string::npos);
    EXPECT_NE(complete.out.find("ship.mn3: ship.oof\n"), std::string::npos);  // no table needed

    const auto bare = Cli({"package", ship, Path("bare.mn3")});
    EXPECT_EQ(bare.status, 65);
    EXPECT_NE(bare.err.find("3 textures are still missing."), std::string::npos);
    EXPECT_TRUE(std::filesystem::exists(Path("bare.mn3")));  // written all the same
    EXPECT_EQ(Cli({"package", Path("none.oof"), Path("none.mn3")}).status, 66);
}

}  // namespace
}  // namespace mw
