#include "view/camera.h"

#include <gtest/gtest.h>

#include <cmath>

namespace mw {
namespace {

TEST(Camera, FitViewAndLimits) {
    Camera c;
    c.FitView(0.0f);
    EXPECT_EQ(c.Zoom, -1.0f);
    EXPECT_EQ(c.ZoomLimit, -5.0f);
    EXPECT_FLOAT_EQ(c.ZoomStep, 0.005f);
    c.FitView(10.0f);
    EXPECT_NEAR(c.Zoom, -10.0f / std::tan(12.5 * M_PI / 180), 1e-3);
    EXPECT_EQ(c.AngleX, 30.0f);
    c.PanX = 50;
    c.Zoom = -1000;
    EXPECT_TRUE(c.UpdateCameraLimits(10.0f));
    EXPECT_EQ(c.PanX, 10.0f);
    EXPECT_NEAR(c.Zoom, -50.0f / std::tan(12.5 * M_PI / 180), 1e-2);
}

TEST(Camera, ZoomStopsAtItsLimitsAndTheAnchorFollows) {
    Camera c;
    c.FitView(10.0f);
    c.Anchor(100, 100);
    c.Drag(ViewMode::Zoom, 100, 100 + 1e6f, 10.0f);  // far in
    EXPECT_EQ(c.Zoom, -1.0f);
    c.Drag(ViewMode::Zoom, 100, 99, 10.0f);  // moving back changes it at once
    EXPECT_LT(c.Zoom, -1.0f);
    c.Drag(ViewMode::Zoom, 100, -1e6f, 10.0f);  // far out
    EXPECT_EQ(c.Zoom, c.ZoomLimit);
    c.Drag(ViewMode::Zoom, 100, -1e6f + 1, 10.0f);
    EXPECT_GT(c.Zoom, c.ZoomLimit);
}

TEST(Camera, PanIsClampedToTheZoomAndRotateFollowsThePixels) {
    Camera c;
    c.FitView(10.0f);
    c.Anchor(0, 0);
    c.Drag(ViewMode::Pan, 1e6f, -1e6f, 10.0f);
    const float most = 10.0f * std::fabs(c.Zoom / 8.0f);
    EXPECT_FLOAT_EQ(c.PanX, most);
    EXPECT_FLOAT_EQ(c.PanY, most);
    c.Drag(ViewMode::Pan, 1e6f - 10, -1e6f, 10.0f);  // the anchor followed the clamp
    EXPECT_LT(c.PanX, most);

    c.Anchor(10, 20);
    c.Drag(ViewMode::Rotate, 15, 27, 10.0f);
    EXPECT_EQ(c.AngleY, 35.0f);
    EXPECT_EQ(c.AngleX, 37.0f);
    // After a wrap to the other side the drag goes on without a jump.
    c.ReanchorX(500);
    c.ReanchorY(600);
    c.Drag(ViewMode::Rotate, 501, 600, 10.0f);
    EXPECT_EQ(c.AngleY, 36.0f);
    EXPECT_EQ(c.AngleX, 37.0f);
}

TEST(Camera, ProjectionPlanes) {
    const ClipPlanes a = ProjectionPlanes(-150.0f, 0.0f);
    EXPECT_EQ(a.Near, 150.0);
    EXPECT_EQ(a.Far, 151.0);
    const ClipPlanes b = ProjectionPlanes(-3.0f, 10.0f);  // inside the model's sphere
    EXPECT_EQ(b.Near, 1.0);
    EXPECT_EQ(b.Far, 24.0);
}

}  // namespace
}  // namespace mw
