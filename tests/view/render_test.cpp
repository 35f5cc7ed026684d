// Frames drawn offscreen and read back: what a user would see.
#include <gtest/gtest.h>

#include <memory>

#include "gamedata_writers.h"
#include "model/file_io.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "support/cli_run.h"
#include "support/offscreen_fixture.h"
#include "support/temp_dir.h"
#include "view/offscreen.h"

namespace mw {
namespace {

constexpr int kW = 200, kH = 150;

// One sub-object per quad, side 2 x 2 at the given offset, facing the camera (which looks
// at the model's +Z side when both angles are 0), untextured.
ModelData Quads(const std::vector<Vector3>& offsets, bool curvedNormals = false) {
    ModelData m;
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        SubObject s;
        s.Index = static_cast<int>(i);
        s.Parent = -1;
        s.Offset = offsets[i];
        const Vector3 corners[4] = {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}};
        for (int c = 0; c < 4; ++c) {
            Vector3 n{0, 0, 1};
            if (curvedNormals) n = Normalize({corners[c].X, corners[c].Y, 0.5f});
            s.Vertices.push_back({corners[c], n, 1.0f});
            s.Corners.push_back({c, 0, 0});
        }
        Face f;
        f.Normal = {0, 0, 1};
        f.VertexCount = 4;
        f.Primitive = kPrimQuads;
        f.Color = {200, 200, 200, 255};
        s.Faces.push_back(f);
        s.Radius = 1.5f;
        m.SubObjects.push_back(s);
    }
    m.Header.Radius = 2.0f;
    RebuildSaveOrder(m);
    CreatePushPop(m);
    return m;
}

class RenderTest : public test::OffscreenViewTest {
  protected:
    static void SetUpTestSuite() { MakeView(kW, kH); }

    // A head-on frame of a model: camera angles 0, fitted zoom.
    QImage Frame(const ModelData& m, ViewType type,
                 const std::function<void(FrameInput&)>& adjust = {}) {
        view_->Load(m, nullptr, MakeMissingTexture(1));
        FrameInput in = HeadOn(m, type);
        if (adjust) adjust(in);
        return view_->Render(m, in);
    }
    static QColor At(const QImage& img, int x, int y) { return img.pixelColor(x, y); }
    static bool Lit(QColor c) { return c.red() + c.green() + c.blue() > 30; }
};

TEST_F(RenderTest, TheSampleFillsTheViewAndIsCentred) {
    ModelData m;
    ASSERT_EQ(readOOF(m, *ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof")), ResultCode::Success);
    CreatePushPop(m);
    view_->Load(m, nullptr, MakeMissingTexture(1));
    FrameInput in = FittedFrame(m);
    in.display.Type = ViewType::SmoothSolid;
    const QImage img = view_->Render(m, in);
    int minX = kW, maxX = -1, minY = kH, maxY = -1;
    for (int y = 0; y < kH; ++y) {
        for (int x = 0; x < kW; ++x) {
            if (x < 50 && y > kH - 50) continue;  // the axis tripod
            if (!Lit(At(img, x, y))) continue;
            minX = std::min(minX, x), maxX = std::max(maxX, x);
            minY = std::min(minY, y), maxY = std::max(maxY, y);
        }
    }
    ASSERT_GE(maxX, 0);
    EXPECT_GT(maxX - minX, kW / 3);  // fills a good part of the view
    EXPECT_GT(maxY - minY, kH / 4);
    EXPECT_LT(maxX - minX, kW);  // and stays inside it
    EXPECT_NEAR((minX + maxX) / 2.0, kW / 2.0, kW * 0.12);
    EXPECT_NEAR((minY + maxY) / 2.0, kH / 2.0, kH * 0.15);
}

// Stored normals need not be unit length; the picture is the one their directions give.
TEST_F(RenderTest, NormalsOfAnyLengthShadeAsUnitOnes) {
    ModelData unit;
    ASSERT_EQ(readOOF(unit, *ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof")),
              ResultCode::Success);
    ModelData shortened = unit;
    int n = 0;
    for (SubObject& sub : shortened.SubObjects) {
        for (Vertex& v : sub.Vertices)
            v.Normal = Scale(v.Normal, 0.03f + 0.1f * static_cast<float>(n++ % 10));
        for (Face& f : sub.Faces)
            f.Normal = Scale(f.Normal, 0.2f + 0.05f * static_cast<float>(n++ % 7));
    }
    for (ViewType type : {ViewType::FlatSolid, ViewType::SmoothSolid}) {
        const QImage want = Frame(unit, type);
        const QImage got = Frame(shortened, type);
        int differing = 0;
        for (int y = 0; y < kH; ++y) {
            for (int x = 0; x < kW; ++x) {
                const QColor a = At(want, x, y), b = At(got, x, y);
                if (std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
                        std::abs(a.blue() - b.blue()) >
                    6) {
                    ++differing;
                }
            }
        }
        EXPECT_LE(differing, kW * kH / 1000) << static_cast<int>(type);
    }
}

TEST_F(RenderTest, EachViewTypeDrawsWhatItShould) {
    const ModelData quad = Quads({{0, 0, 0}});
    const QImage wire = Frame(quad, ViewType::Wireframe);
    EXPECT_FALSE(Lit(At(wire, kW / 2, kH / 2)));  // lines only: the middle stays empty
    int lit = 0;
    for (int x = 0; x < kW; ++x)
        lit += Lit(At(wire, x, kH / 2));
    EXPECT_GE(lit, 2);  // crossing the two upright edges

    const QImage flat = Frame(Quads({{0, 0, 0}}, true), ViewType::FlatSolid);
    EXPECT_TRUE(Lit(At(flat, kW / 2, kH / 2)));
    EXPECT_EQ(At(flat, kW / 2 - 20, kH / 2 - 20), At(flat, kW / 2 + 20, kH / 2 + 20));

    const QImage smooth = Frame(Quads({{0, 0, 0}}, true), ViewType::SmoothSolid);
    EXPECT_TRUE(Lit(At(smooth, kW / 2, kH / 2)));
    EXPECT_NE(At(smooth, kW / 2 - 30, kH / 2 - 30), At(smooth, kW / 2 + 30, kH / 2 + 30));
}

TEST_F(RenderTest, HighlightAndDropTargetColours) {
    const ModelData two = Quads({{-1.5f, 0, 0}, {1.5f, 0, 0}});
    const QImage img = Frame(two, ViewType::Textured, [](FrameInput& in) {
        in.selection.hiliteSOBJ = 0;
        in.selection.hiliteSOBJ2 = 1;
        in.display.ViewTrajectories = false;
    });
    // Sub-object 0 is at model X -1.5, which OpenGL shows on the right.
    const QColor selected = At(img, kW / 2 + 30, kH / 2);
    const QColor target = At(img, kW / 2 - 30, kH / 2);
    EXPECT_GT(selected.red(), selected.green() * 1.3) << selected.name().toStdString();
    EXPECT_GT(selected.blue(), selected.green() * 1.3);
    EXPECT_GT(target.green(), target.red() * 1.3) << target.name().toStdString();
    EXPECT_GT(target.green(), target.blue() * 1.3);
}

TEST_F(RenderTest, ThreeDModeHasRedAndCyanHalves) {
    const QImage img = Frame(Quads({{0, 0, 0}}), ViewType::FlatSolid,
                             [](FrameInput& in) { in.display.ThreeD = true; });
    int red = 0, cyan = 0;
    for (int y = 0; y < kH; ++y) {
        for (int x = 60; x < kW; ++x) {
            const QColor c = At(img, x, y);
            red += c.red() > 30 && c.green() == 0 && c.blue() == 0;
            cyan += c.red() == 0 && c.green() > 30 && c.blue() > 30;
        }
    }
    EXPECT_GT(red, 20);
    EXPECT_GT(cyan, 20);
}

TEST_F(RenderTest, PickingFindsTheSubObjectUnderTheMouse) {
    // Sub-object 1 lies in front of 0 where they overlap; 2 lies behind 0 there.
    ModelData m = Quads({{0, 0, 0}, {-1.0f, 0, 0.5f}, {1.0f, 0, -0.5f}});
    m.Header.Radius = 3.0f;
    auto pickAt = [&](int x, int y) {
        Frame(m, ViewType::FlatSolid, [&](FrameInput& in) {
            in.pick = true;
            in.mouseX = x;
            in.mouseY = y;
        });
        return view_->renderer().PickedSubObject();
    };
    const int centre = kW / 2;
    const float unit = kH / 2.0f /
                       (3.0f / std::tan(12.5f * 3.14159265f / 180) *
                        std::tan(12.5f * 3.14159265f / 180));  // pixels per unit
    const int px = static_cast<int>(unit * 0.5f);
    EXPECT_EQ(pickAt(centre + 3 * px, kH / 2), 1);  // 1 alone (model X -1 shows right)
    EXPECT_EQ(pickAt(centre + px, kH / 2), 1);      // 1 over 0: the nearer
    EXPECT_EQ(pickAt(centre - px, kH / 2), 0);      // 0 over 2: the nearer, drawn first
    EXPECT_EQ(pickAt(centre - 3 * px, kH / 2), 2);  // 2 alone
    EXPECT_EQ(pickAt(2, 2), -1);                    // nothing

    // A point glyph of the sub-object under the mouse takes the click away: the gun point's
    // cross runs along the row through it, on top of sub-object 1.
    m.GunPoints = {{1, {0, 0, 0.1f}, {0, 0, 1}}};
    auto pickWithPoints = [&](int y, bool points) {
        Frame(m, ViewType::FlatSolid, [&](FrameInput& in) {
            in.pick = true;
            in.mouseX = centre + 2 * px + px / 2;
            in.mouseY = y;
            in.display.ViewPoints = points;
        });
        return view_->renderer().PickedSubObject();
    };
    int takenAway = 0;
    for (int y = kH / 2 - 2; y <= kH / 2 + 2; ++y) {
        EXPECT_EQ(pickWithPoints(y, false), 1) << y;
        takenAway += pickWithPoints(y, true) == -1;
    }
    EXPECT_GE(takenAway, 1);
    EXPECT_LE(takenAway, 2);  // only on the glyph's line
}

TEST_F(RenderTest, FramesDoNotRebuildTheDisplayLists) {
    const ModelData m = Quads({{0, 0, 0}, {2, 0, 0}});
    view_->Load(m, nullptr, MakeMissingTexture(1));
    const int builds = view_->renderer().ListBuilds();
    FrameInput in = FittedFrame(m);
    for (int i = 0; i < 10; ++i) {
        in.camera.AngleY += 10;
        view_->Render(m, in);
    }
    EXPECT_EQ(view_->renderer().ListBuilds(), builds);
}

// The command line draws a mission's textures over the game's own.
TEST(RenderCommandTest, TheMissionOptionDrawsTheMissionsTextures) {
    test::TempDir dir("render_mission");
    const Bytes blue = WriteOGF({4, 4, std::vector<std::uint32_t>(16, 0xffff0000u)}, {});
    ASSERT_EQ(WriteFileReplacing(dir / "Blue.MN3", WriteHOG({{"ship_hull.ogf", blue}})), "");
    const std::string archive = MW_SOURCE_DIR "/samples/gamedata/d3.hog";
    const auto bluePixels = [&](const std::vector<std::string>& extra) {
        const std::string png = (dir / "ship.png").string();
        std::vector<std::string> args = {"render",  MW_SOURCE_DIR "/samples/ship.oof",
                                         "--png",   png,
                                         "--size",  "320x240",
                                         "--d3hog", archive};
        args.insert(args.end(), extra.begin(), extra.end());
        const test::CliRun r = test::Cli(args);
        EXPECT_EQ(r.status, 0) << r.err;
        const QImage image(QString::fromStdString(png));
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor c = image.pixelColor(x, y);
                count += c.blue() > 100 && c.red() < 40 && c.green() < 40;
            }
        }
        return count;
    };
    EXPECT_LT(bluePixels({}), 200);  // the axis tripod
    EXPECT_GT(bluePixels({"--mission", (dir / "Blue.MN3").string()}), 2000);
}

}  // namespace
}  // namespace mw
