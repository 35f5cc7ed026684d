// The surfaceless context draws what the display's context draws, and transparent frames
// keep the model's colours.
#include <gtest/gtest.h>

#include "gamedata/texture_loader.h"
#include "model/file_io.h"
#include "model/oof.h"
#include "view/offscreen.h"

namespace mw {
namespace {

// The sample, textured from the sample's game data, as `kind` draws it.
QImage DrawSample(OffscreenContext kind, bool transparent = false) {
    clsOOF oof;
    const auto bytes = ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof");
    EXPECT_TRUE(bytes && oof.readOOF(*bytes) == ResultCode::Success);
    ModelData& model = oof.data();
    Settings settings;
    settings.D3HogPath = MW_SOURCE_DIR "/samples/gamedata/d3.hog";
    DeriveArchivePaths(settings);
    GameData data;
    data.Hog.ReadHOGs(settings, nullptr);
    data.Gam.ReadGAMs(data.Hog, settings, nullptr, nullptr);

    OffscreenView view;
    std::string error;
    if (!view.Create(320, 240, error, kind)) {
        ADD_FAILURE() << error;
        return {};
    }
    EXPECT_EQ(view.kind(), kind);
    const std::vector<std::uint32_t> missing = MakeMissingTexture(1);
    LoadedTextures loaded;
    view.MakeCurrent();
    LoadModelTextures(model, "ship.oof", data, settings, missing, view.renderer(), loaded);
    view.Load(model, &loaded, missing);
    view.LoadGlow(&data, settings);
    const FrameInput in = FittedFrame(model);
    return transparent ? view.RenderTransparent(model, in) : view.Render(model, in);
}

// The share of pixels whose channels differ by more than `tolerance`.
double DifferentShare(const QImage& a, const QImage& b, int tolerance) {
    int different = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            if (std::abs(qRed(p) - qRed(q)) > tolerance ||
                std::abs(qGreen(p) - qGreen(q)) > tolerance ||
                std::abs(qBlue(p) - qBlue(q)) > tolerance || qAlpha(p) != qAlpha(q))
                ++different;
        }
    }
    return static_cast<double>(different) / (a.width() * a.height());
}

TEST(HeadlessTest, SurfacelessPictureMatchesTheDisplaysPicture) {
    const QImage onDisplay = DrawSample(OffscreenContext::Qt);
    const QImage headless = DrawSample(OffscreenContext::Surfaceless);
    ASSERT_EQ(onDisplay.size(), headless.size());
    EXPECT_LT(DifferentShare(onDisplay, headless, 8), 0.01);
    // Not a blank frame: the ship covers a good part of it.
    int lit = 0;
    for (int y = 0; y < headless.height(); ++y)
        for (int x = 0; x < headless.width(); ++x)
            lit += qGray(headless.pixel(x, y)) > 40;
    EXPECT_GT(lit, headless.width() * headless.height() / 10);
}

TEST(HeadlessTest, TransparentFrameKeepsTheModelOpaqueAndTheRestClear) {
    const QImage opaque = DrawSample(OffscreenContext::Surfaceless);
    const QImage clear = DrawSample(OffscreenContext::Surfaceless, true);
    ASSERT_TRUE(clear.hasAlphaChannel());
    EXPECT_EQ(qAlpha(clear.pixel(0, 0)), 0);
    const QPoint middle(clear.width() / 2, clear.height() / 2);
    EXPECT_EQ(qAlpha(clear.pixel(middle)), 255);
    EXPECT_EQ(clear.pixel(middle) & 0xFFFFFF, opaque.pixel(middle) & 0xFFFFFF);
}

}  // namespace
}  // namespace mw
