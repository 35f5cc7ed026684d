// Thumbnails and contact sheets drawn by meshwright-cli.
#include <gtest/gtest.h>
#include <QImage>
#include <QLabel>
#include <filesystem>
#include <fstream>

#include "editor/dialogs/about_dialog.h"
#include "model/file_io.h"
#include "support/cli_run.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

namespace fs = std::filesystem;
using test::Cli;

const std::string kSample = MW_SOURCE_DIR "/samples/ship.oof";
const std::string kArchive = MW_SOURCE_DIR "/samples/gamedata/d3.hog";

QRect VisibleRect(const QImage& image) {
    QRect r;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 0) r |= QRect(x, y, 1, 1);
    return r;
}

TEST(ThumbnailTest, SquareTransparentFittedAndCentred) {
    test::TempDir dir("thumbnail");
    const std::string png = (dir / "ship.png").string();
    const auto r = Cli({"thumbnail", kSample, png, "--size", "96", "--d3hog", kArchive});
    ASSERT_EQ(r.status, 0) << r.err;
    const QImage image(QString::fromStdString(png));
    ASSERT_EQ(image.size(), QSize(96, 96));
    ASSERT_TRUE(image.hasAlphaChannel());
    for (const QPoint corner : {QPoint(0, 0), QPoint(95, 0), QPoint(0, 95), QPoint(95, 95)})
        EXPECT_EQ(qAlpha(image.pixel(corner)), 0);
    const QRect visible = VisibleRect(image);
    // Fitted: the longer side spans the square less its margins; centred within a pixel.
    EXPECT_GE(std::max(visible.width(), visible.height()), 88);
    EXPECT_LE(std::abs(visible.center().x() - 47), 1);
    EXPECT_LE(std::abs(visible.center().y() - 47), 1);
    EXPECT_EQ(qAlpha(image.pixel(visible.center())), 255);

    // Without game-data options the editor's settings file names the game data.
    const QImage placeholder = [&] {
        EXPECT_EQ(Cli({"thumbnail", kSample, (dir / "plain.png").string(), "--size", "96"}).status,
                  0);
        return QImage(QString::fromStdString((dir / "plain.png").string()));
    }();
    fs::create_directories(dir / "config" / "Meshwright");
    std::ofstream(dir / "config" / "Meshwright" / "MWUIData.ini")
        << "[Path Settings]\nD3HogPath=" << kArchive << "\n";
    const QByteArray oldConfig = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString((dir / "config").string()));
    const auto withSettings =
        Cli({"thumbnail", kSample, (dir / "set.png").string(), "--size", "96"});
    qputenv("XDG_CONFIG_HOME", oldConfig);
    ASSERT_EQ(withSettings.status, 0) << withSettings.err;
    EXPECT_EQ(QImage(QString::fromStdString((dir / "set.png").string())), image);
    EXPECT_NE(placeholder, image);
}

TEST(SheetTest, OneCellPerModelAndTheDamagedOneSaysWhy) {
    test::TempDir dir("sheet");
    fs::create_directories(dir / "models");
    fs::copy_file(kSample, dir / "models" / "ship.oof");
    fs::copy_file(kSample, dir / "models" / "Copy.OOF");
    const auto bytes = ReadFileBytes(kSample);
    ASSERT_TRUE(bytes);
    std::ofstream(dir / "models" / "broken.oof", std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes->data()), 40);
    std::ofstream(dir / "models" / "notes.txt") << "not a model";

    const std::string png = (dir / "sheet.png").string();
    const auto r = Cli({"sheet", (dir / "models").string(), "--png", png, "--columns", "2",
                        "--size", "64", "--d3hog", kArchive});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "3 models\n");
    EXPECT_NE(r.err.find("broken.oof: "), std::string::npos) << r.err;
    const QImage sheet(QString::fromStdString(png));
    // Two columns, two rows of 64-pixel cells with their labels, 4-pixel gaps.
    EXPECT_EQ(sheet.size(), QSize(4 + 2 * 68, 4 + 2 * (64 + 18 + 4)));
    // Cells in name order: broken.oof, Copy.OOF, ship.oof. The broken cell holds the error
    // text (drawn in red), the others a model.
    auto reddish = [&](QRect cell) {
        int n = 0;
        for (int y = cell.top(); y <= cell.bottom(); ++y)
            for (int x = cell.left(); x <= cell.right(); ++x) {
                const QRgb p = sheet.pixel(x, y);
                n += qRed(p) > 150 && qGreen(p) < 140 && qBlue(p) < 130;
            }
        return n;
    };
    EXPECT_GT(reddish(QRect(4, 4, 64, 64)), 20);
    EXPECT_NE(sheet.copy(QRect(72, 4, 64, 64)), sheet.copy(QRect(4, 4, 64, 64)));
    EXPECT_EQ(sheet.copy(QRect(72, 4, 64, 64)), sheet.copy(QRect(4, 90, 64, 64)));

    // The sample archive: its one model, drawn with the archive's own textures.
    const auto archive = Cli({"sheet", kArchive, "--png", (dir / "archive.png").string()});
    ASSERT_EQ(archive.status, 0) << archive.err;
    EXPECT_EQ(archive.out, "1 models\n");
    EXPECT_EQ(QImage(QString::fromStdString((dir / "archive.png").string())).width(), 4 + 164);

    EXPECT_EQ(Cli({"sheet", (dir / "nothing").string(), "--png", png}).status, 66);
}

TEST(VersionTest, CliTellsTheAboutBoxVersion) {
    const auto r = Cli({"--version"});
    EXPECT_EQ(r.status, 0);
    const frmAbout about{QPixmap()};
    const QLabel* shown = about.findChild<QLabel*>("lblVersion");
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(r.out, shown->text().toStdString() + "\n");
}

}  // namespace
}  // namespace mw
