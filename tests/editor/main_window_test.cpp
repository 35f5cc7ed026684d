// The editor window on the sample model, under a real (virtual) X display.
#include <gtest/gtest.h>
#include <QPainter>
#include <QTest>
#include <cstdlib>

#include "editor/main_window.h"
#include "editor/viewport.h"

namespace mw {
namespace {

class EditorTest : public ::testing::Test {
  protected:
    EditorTest() {
        settings_.D3HogPath = MW_SOURCE_DIR "/samples/gamedata/d3.hog";
        DeriveArchivePaths(settings_);
        game_.Hog.ReadHOGs(settings_, nullptr);
        game_.Gam.ReadGAMs(game_.Hog, settings_, nullptr, nullptr);
        window_ = std::make_unique<frmOOF>(oof_, game_, settings_);
        window_->resize(900, 640);
        window_->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    }

    QImage ViewportImage() {
        QApplication::processEvents();
        return window_->viewport().grabFramebuffer();
    }

    Settings settings_;
    GameData game_;
    clsOOF oof_;
    std::unique_ptr<frmOOF> window_;
};

TEST_F(EditorTest, OpensTheSampleTexturedAndPicksItsParts) {
    ASSERT_TRUE(window_->LoadModel(MW_SOURCE_DIR "/samples/ship.oof"));
    QTest::qWait(50);
    EXPECT_TRUE(window_->selection().modelReady);
    for (const auto& r : window_->textures().Resolved)
        EXPECT_TRUE(r.Decoded);

    // Find a pixel of the hull by picking over a grid; a corner picks nothing.
    Viewport& view = window_->viewport();
    QApplication::processEvents();
    EXPECT_EQ(view.PickAt(3, 3), -1);
    int hx = -1, hy = -1;
    for (int y = view.height() / 4; y < view.height() * 3 / 4 && hx < 0; y += 12) {
        for (int x = view.width() / 4; x < view.width() * 3 / 4 && hx < 0; x += 12) {
            if (view.PickAt(x, y) == 0 && view.PickAt(x + 3, y + 3) == 0) hx = x, hy = y;
        }
    }
    ASSERT_GE(hx, 0) << "no pixel of the hull found";
    const QColor plain = ViewportImage().pixelColor(hx + 1, hy + 1);
    EXPECT_GT(plain.red() + plain.green() + plain.blue(), 60);
    EXPECT_LT(std::abs(plain.red() - plain.blue()), 40);  // the grey hull texture

    window_->SelectSubObject(0);
    EXPECT_EQ(window_->selection().hiliteSOBJ, 0);
    const QColor highlighted = ViewportImage().pixelColor(hx + 1, hy + 1);
    EXPECT_GT(highlighted.red(), highlighted.green() + 20);  // LightMagenta, untextured
    EXPECT_GT(highlighted.blue(), highlighted.green() + 20);

    // The screenshot for the documentation, when asked for.
    window_->SelectSubObject(3);
    window_->SetViewMode(ViewMode::Rotate);
    if (const char* path = std::getenv("MW_SCREENSHOT")) {
        // The window with the viewport's frame as the screen shows it (opaque).
        QImage shot = window_->grab().toImage();
        QPainter painter(&shot);
        painter.drawImage(view.mapTo(window_.get(), QPoint(0, 0)),
                          ViewportImage().convertToFormat(QImage::Format_RGB32));
        painter.end();
        shot.save(path);
    }
}

TEST_F(EditorTest, DroppingASubObjectOntoItsChildIsRefusedAndOntoAnotherReparents) {
    ASSERT_TRUE(window_->LoadModel(MW_SOURCE_DIR "/samples/ship.oof"));
    window_->SelectSubObject(4);  // the radar, a child of the turret (3)
    window_->HoverSubObject(1);   // over the left wing
    window_->DropSubObject(true, false);
    EXPECT_EQ(window_->model().Sub(4).Parent, 1);
    EXPECT_EQ(window_->selection().curSOBJ, 4);

    window_->SelectSubObject(-1);
    EXPECT_EQ(window_->selection().hiliteSOBJ, -1);
}

}  // namespace
}  // namespace mw
