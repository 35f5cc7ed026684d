// The point, batteries and textures panels in the editor window: the texture picture drawn
// from the viewport's textures, and screenshots of the panels.
#include <gtest/gtest.h>
#include <QAccessible>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QTabBar>
#include <filesystem>

#include "editor/panels/panel_host.h"
#include "editor/panels/texture_preview.h"
#include "editor/panels/textures_panel.h"
#include "model/file_io.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "model/properties.h"
#include "support/editor_window.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

const std::filesystem::path kDemoImages = MW_SOURCE_DIR "/../shared/testdata/images";

class PanelsWindowTest : public EditorTest {
  protected:
    TexturesPanel& Textures() {
        return *static_cast<TexturesPanel*>(panels().FindPanel("Textures"));
    }
    // Chooses texture t and returns the picture once it is on screen.
    QImage Preview(int t) {
        Textures().findChild<QListWidget*>("lstTextures")->setCurrentRow(t);
        TexturePreview* preview = Textures().preview();
        EXPECT_TRUE(QTest::qWaitFor([&] { return preview->texture() == t; }));
        QTest::qWait(30);
        return preview->grabFramebuffer();
    }
    static std::array<double, 3> MeanColour(const QImage& image) {
        std::array<double, 3> sum{};
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor c = image.pixelColor(x, y);
                sum[0] += c.red();
                sum[1] += c.green();
                sum[2] += c.blue();
            }
        }
        for (double& v : sum)
            v /= image.width() * image.height();
        return sum;
    }
};

TEST_F(PanelsWindowTest, ThePreviewShowsTheTextureTheRightWayUp) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    ShowTab("Textures");
    EXPECT_EQ(panels().shownPanel(), "Textures");
    EXPECT_EQ(Textures().findChild<QListWidget*>("lstTextures")->count(), 3);
    const QImage hull = Preview(0);
    ASSERT_FALSE(hull.isNull());
    // The hull's red marking is in its top left corner; the plates below are grey.
    const QColor corner = hull.pixelColor(4, 4);
    EXPECT_GT(corner.red(), 150);
    EXPECT_LT(corner.green(), 80);
    const QColor plate = hull.pixelColor(hull.width() / 2 + 10, hull.height() / 2 + 10);
    EXPECT_NEAR(plate.red(), plate.green(), 12);
    EXPECT_GT(plate.green(), 100);
    EXPECT_TRUE(prompts_.messages.empty());

    // Nothing chosen clears the picture.
    Textures().findChild<QListWidget*>("lstTextures")->setCurrentRow(-1);
    QTest::qWait(30);
    EXPECT_EQ(Textures().preview()->grabFramebuffer().pixelColor(4, 4), QColor(Qt::black));
}

// The game's own demo textures, as loose images, show with their true colours.
TEST_F(PanelsWindowTest, RealDemoTexturesShowWithTheirTrueColours) {
    if (!std::filesystem::is_directory(kDemoImages))
        GTEST_SKIP() << "no demo textures at " << kDemoImages;
    test::TempDir dir("demo-textures");
    ModelData ship;
    ASSERT_EQ(readOOF(ship, *ReadFileBytes(kShip)), ResultCode::Success);
    const char* const names[3] = {"BlastRingOrange", "Taunt", "d3_btn_up"};
    for (int t = 0; t < 3; ++t)
        ship.Textures[static_cast<std::size_t>(t)] = {"", names[t], ""};
    ASSERT_EQ(WriteFileReplacing(dir / "demo.oof", WriteOOF(ship)), "");
    settings_.OGFPath = kDemoImages.string() + "/";
    ASSERT_TRUE(window_->LoadModel(QString::fromStdString((dir / "demo.oof").string())));
    ShowTab("Textures");
    for (int t = 0; t < 3; ++t) {
        const auto decoded = DecodeGameTexture(names[t], game_, settings_);
        ASSERT_TRUE(decoded) << names[t];
        QImage expected(reinterpret_cast<const uchar*>(decoded->Pixels.data()), decoded->Width,
                        decoded->Height, QImage::Format_RGBA8888);
        const auto want = MeanColour(expected);
        const auto got = MeanColour(Preview(t));
        for (int c = 0; c < 3; ++c)
            EXPECT_NEAR(got[static_cast<std::size_t>(c)], want[static_cast<std::size_t>(c)], 4.0)
                << names[t] << " channel " << c;
    }
}

TEST_F(PanelsWindowTest, EveryPanelControlHasAnAccessibleName) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    doc().SelectPoint(PointType::GPNT, 0);
    for (const char* key : {"Points", "Textures", "Batteries"}) {
        QWidget* panel = panels().FindPanel(key);
        ASSERT_NE(panel, nullptr) << key;
        for (QWidget* w : panel->findChildren<QWidget*>()) {
            if (w->objectName().isEmpty() || w->objectName().startsWith("qt_")) continue;
            if (qobject_cast<QLabel*>(w) != nullptr) continue;
            ExpectAccessibleName(w);
        }
    }
}

TEST_F(PanelsWindowTest, Screenshots) {
    if (ScreenshotPath("x").isEmpty()) GTEST_SKIP() << "set MW_SCREENSHOT_DIR to take them";
    window_->resize(1100, 800);
    ASSERT_TRUE(window_->LoadModel(kShip));
    doc().SelectPoint(PointType::GPNT, 1);
    QTest::qWait(100);
    EXPECT_TRUE(WindowImage().save(ScreenshotPath("editor-points.png")));
    ShowTab("Batteries");
    doc().SetSelection(SubObjectSelected(doc().selection(), -1));
    auto* assigned = panels().FindPanel("Batteries")->findChild<QListWidget*>("lstAssignedWBAT");
    assigned->setCurrentRow(1);
    QTest::qWait(100);
    EXPECT_TRUE(WindowImage().save(ScreenshotPath("editor-batteries.png")));
    ShowTab("Textures");
    Preview(0);
    EXPECT_TRUE(WindowImage().save(ScreenshotPath("editor-textures.png")));

    // The check window over a model with a few findings.
    ModelData& m = doc().model();
    m.AttachNormals.push_back(m.AttachNormals[0]);
    m.Sub(6).Properties = "$glow=1,1";
    ParseProperties(m.Sub(6));
    doc().ResetModel(true);
    Part<MainActions>().action("mnuToolsCheck")->trigger();
    auto* check = window_->findChild<QDialog*>("frmCheck");
    ASSERT_NE(check, nullptr);
    QTest::qWait(100);
    EXPECT_TRUE(check->grab().save(ScreenshotPath("editor-check.png")));
}

}  // namespace
}  // namespace mw
