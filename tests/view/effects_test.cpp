// Textures, animation, effects and the background, drawn offscreen and read back.
#include <gtest/gtest.h>

#include "gamedata/texture_loader.h"
#include "model/file_io.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "support/offscreen_fixture.h"
#include "view/animation.h"
#include "view/offscreen.h"

namespace mw {
namespace {

constexpr int kW = 160, kH = 120;

SubObject Quad(int index, Vector3 offset, std::array<std::uint8_t, 4> colour, int texture = -1) {
    SubObject s;
    s.Index = index;
    s.Parent = -1;
    s.Offset = offset;
    const Vector3 corners[4] = {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}};
    const float uv[4][2] = {{0, 1}, {1, 1}, {1, 0}, {0, 0}};
    for (int c = 0; c < 4; ++c) {
        s.Vertices.push_back({corners[c], {0, 0, 1}, 1.0f});
        s.Corners.push_back({c, uv[c][0], uv[c][1]});
    }
    Face f;
    f.Normal = {0, 0, 1};
    f.VertexCount = 4;
    f.Primitive = kPrimQuads;
    f.Color = colour;
    f.Textured = texture >= 0;
    f.TextureIndex = texture;
    s.Faces.push_back(f);
    s.Radius = 1.5f;
    return s;
}

ModelData Model(std::vector<SubObject> subs, int textures = 0) {
    ModelData m;
    m.SubObjects = std::move(subs);
    m.Textures.resize(static_cast<std::size_t>(textures));
    m.Header.Radius = 2.0f;
    RebuildSaveOrder(m);
    CreatePushPop(m);
    return m;
}

class EffectsTest : public test::OffscreenViewTest {
  protected:
    static void SetUpTestSuite() {
        MakeView(kW, kH);
        view_->LoadGlow(nullptr, Settings{});
    }

    static FrameInput HeadOn(const ModelData& m) {
        return OffscreenViewTest::HeadOn(m, ViewType::FlatSolid);
    }
    static QColor Centre(const QImage& img) { return img.pixelColor(kW / 2, kH / 2); }
};

class SampleTextures : public EffectsTest {
  protected:
    void SetUp() override {
        ASSERT_EQ(readOOF(model_, *ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof")),
                  ResultCode::Success);
        CreatePushPop(model_);
        settings_.D3HogPath = MW_SOURCE_DIR "/samples/gamedata/d3.hog";
        DeriveArchivePaths(settings_);
        data_.Hog.ReadHOGs(settings_, nullptr);
        data_.Gam.ReadGAMs(data_.Hog, settings_, nullptr, nullptr);
        view_->MakeCurrent();
        LoadModelTextures(model_, "ship.oof", data_, settings_, MakeMissingTexture(1),
                          view_->renderer(), loaded_);
        view_->Load(model_, &loaded_, {});
    }
    ModelData model_;
    Settings settings_;
    GameData data_;
    LoadedTextures loaded_;
};

TEST_F(SampleTextures, AppearWithTheirColoursTheRightWayUp) {
    const QImage hull = view_->RenderPreview(0);
    const QColor marking = hull.pixelColor(3, 3);  // the red marking, top left
    EXPECT_GT(marking.red(), 150);
    EXPECT_LT(marking.blue(), 80);
    const QColor plate = hull.pixelColor(kW / 4, kH * 3 / 4);
    EXPECT_GT(plate.red(), 50);  // grey plates, a little blue
    EXPECT_LT(std::abs(plate.red() - plate.green()), 10);
    EXPECT_GE(plate.blue(), plate.red());
}

TEST_F(SampleTextures, AnAnimatedTextureShowsTheNextFrameAfterItsFrameTime) {
    const int before = Centre(view_->RenderPreview(2)).green();
    std::vector<float> angles;
    view_->MakeCurrent();
    EXPECT_TRUE(AdvanceView(view_->renderer(), model_, loaded_, angles, 0.26f, true, false));
    EXPECT_EQ(loaded_.Slots[2].CurrentFrame, 2);
    const int after = Centre(view_->RenderPreview(2)).green();
    EXPECT_LT(after, before - 20);  // frame 2 is darker than the last frame
}

TEST_F(SampleTextures, ASlidingTextureMovesTheFaceImage) {
    FrameInput in = FittedFrame(model_);
    in.display.ViewPoints = false;
    const QImage still = view_->Render(model_, in);
    std::vector<float> angles;
    view_->MakeCurrent();
    AdvanceView(view_->renderer(), model_, loaded_, angles, 0.5f, true, false);
    EXPECT_NEAR(loaded_.Slots[1].SlidePosU / loaded_.Slots[1].Gam.SlideTimeU(), 0.25f, 1e-4);
    EXPECT_NE(view_->Render(model_, in), still);
}

TEST_F(EffectsTest, GlowSpritesAddTheirColourAndStayInFrontOfTheNearPlane) {
    SubObject glow;
    glow.Index = 1;
    glow.Parent = -1;
    glow.Offset = {0, 0, 0.5f};
    glow.Properties = "$glow=0,0,1,0.8";
    glow.PropertyFlags = kPropGlow;
    glow.GlowColor = {0, 0, 1};
    glow.GlowSize = 0.8f;
    const ModelData m = Model({Quad(0, {}, {255, 0, 0, 255}), glow});
    view_->Load(m, nullptr, {});
    FrameInput in = HeadOn(m);
    in.display.Glow = false;
    const QColor plain = Centre(view_->Render(m, in));
    in.display.Glow = true;
    const QColor glowing = Centre(view_->Render(m, in));
    EXPECT_EQ(glowing.red(), plain.red());         // the quad behind shows through unchanged
    EXPECT_GT(glowing.blue(), plain.blue() + 60);  // with the sprite's colour added
    in.camera.Zoom = -1.2f;                        // the camera almost inside the model
    in.display.Glow = false;
    const QColor closePlain = Centre(view_->Render(m, in));
    in.display.Glow = true;
    EXPECT_GT(Centre(view_->Render(m, in)).blue(), closePlain.blue() + 60);

    // The sprite takes the pick from the quad behind it.
    in.camera = FittedFrame(m).camera;
    in.camera.AngleX = in.camera.AngleY = 0.0f;
    in.pick = true;
    in.mouseX = kW / 2;
    in.mouseY = kH / 2;
    view_->Render(m, in);
    EXPECT_EQ(view_->renderer().PickedSubObject(), 1);
}

TEST_F(EffectsTest, FacingPartsTurnToTheScreen) {
    SubObject facing = Quad(0, {}, {0, 255, 0, 255});
    facing.PropertyFlags = kPropFacing;
    const ModelData m = Model({facing});
    view_->Load(m, nullptr, {});
    FrameInput in = HeadOn(m);
    in.camera.AngleY = 90.0f;  // the quad itself would be edge-on
    EXPECT_GT(Centre(view_->Render(m, in)).green(), 40);

    // Picked by the colour it leaves under the mouse.
    in.pick = true;
    in.mouseX = kW / 2;
    in.mouseY = kH / 2;
    view_->Render(m, in);
    EXPECT_EQ(view_->renderer().PickedSubObject(), 0);
    in.mouseX = 2;
    in.mouseY = 2;
    view_->Render(m, in);
    EXPECT_EQ(view_->renderer().PickedSubObject(), -1);
    in.pick = false;

    in.display.Facing = false;
    EXPECT_LT(Centre(view_->Render(m, in)).green(), 40);
}

TEST_F(EffectsTest, ABlendedTextureLetsWhatIsBehindShowThrough) {
    // A see-through textured quad in front of a green one.
    const ModelData m =
        Model({Quad(0, {0, 0, 0.5f}, {255, 255, 255, 255}, 0), Quad(1, {}, {0, 255, 0, 255})}, 1);
    LoadedTextures loaded;
    loaded.Slots.resize(1);
    loaded.Slots[0].HasAlpha = true;
    view_->MakeCurrent();
    view_->renderer().AllocModelTextures(1);
    const std::vector<std::uint32_t> clear(16, 0x00FF0000u);  // blue, alpha 0
    view_->renderer().UploadModelTexture(0, 4, 4, clear.data());
    view_->Load(m, &loaded, {});
    FrameInput in = HeadOn(m);
    in.display.Type = ViewType::Textured;
    const QColor through = Centre(view_->Render(m, in));
    const ModelData behind = Model({Quad(0, {}, {0, 255, 0, 255})});
    view_->Load(behind, nullptr, {});
    const QColor alone = Centre(view_->Render(behind, in));
    EXPECT_GT(through.green(), 100);
    EXPECT_EQ(through, alone);
}

TEST_F(EffectsTest, TheBackgroundFillsTheViewUpright) {
    BackgroundImage picture{2, 2, {0, 0, 255, 255, 255, 255, 255, 0, 0, 0, 255, 0}};
    view_->MakeCurrent();
    view_->renderer().UploadBackground(&picture);
    const ModelData empty;
    FrameInput in;
    const QImage img = view_->Render(empty, in);
    EXPECT_GT(img.pixelColor(5, 5).red(), 200);            // top left red
    EXPECT_GT(img.pixelColor(kW - 5, 5).green(), 200);     // top right green
    EXPECT_GT(img.pixelColor(5, kH - 5).blue(), 200);      // bottom left blue
    EXPECT_GT(img.pixelColor(kW - 5, kH - 5).red(), 200);  // bottom right white
    EXPECT_GT(img.pixelColor(kW - 5, kH - 5).blue(), 200);
    in.display.ShowBackground = false;
    EXPECT_EQ(view_->Render(empty, in).pixelColor(5, 5).red(), 0);
    view_->renderer().UploadBackground(nullptr);
    EXPECT_FALSE(view_->renderer().BackgroundLoaded());
}

}  // namespace
}  // namespace mw
