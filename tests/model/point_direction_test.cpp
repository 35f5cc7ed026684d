#include "model/point_direction.h"

#include <gtest/gtest.h>

namespace mw {
namespace {

TEST(PointDirectionTest, AxisDirectionsGiveTheirAngles) {
    const DirectionAngles up = AnglesFromDirection({0, 1, 0});
    EXPECT_DOUBLE_EQ(up.UpDown, 90.0);
    EXPECT_DOUBLE_EQ(up.LeftRight, 0.0);
    // Straight back reads +180, also when the zero X is stored negative.
    EXPECT_DOUBLE_EQ(AnglesFromDirection({0, 0, -1}).LeftRight, 180.0);
    EXPECT_DOUBLE_EQ(AnglesFromDirection({-0.0f, 0, -1}).LeftRight, 180.0);
    EXPECT_DOUBLE_EQ(AnglesFromDirection({-1, 0, 0}).LeftRight, 90.0);
    EXPECT_DOUBLE_EQ(AnglesFromDirection({1, 0, 0}).LeftRight, -90.0);
    EXPECT_DOUBLE_EQ(AnglesFromDirection({0, -2.5f, 0}).UpDown, -90.0);
}

TEST(PointDirectionTest, LengthDoesNotChangeTheAngles) {
    // Stored normals are often not of unit length.
    const DirectionAngles unit = AnglesFromDirection({0.36f, 0.48f, 0.8f});
    const DirectionAngles scaled = AnglesFromDirection({0.036f, 0.048f, 0.08f});
    EXPECT_NEAR(unit.LeftRight, scaled.LeftRight, 1e-5);
    EXPECT_NEAR(unit.UpDown, scaled.UpDown, 1e-5);
}

TEST(PointDirectionTest, AnglesRoundTrip) {
    for (double a : {-179.5, -120.0, -45.0, 0.0, 33.3, 90.0, 150.0}) {
        for (double b : {-89.0, -30.0, 0.0, 12.5, 60.0}) {
            const Vector3 d = DirectionFromAngles(a, b);
            EXPECT_NEAR(Length(d), 1.0f, 1e-6f);
            const DirectionAngles back = AnglesFromDirection(d);
            EXPECT_NEAR(back.LeftRight, a, 1e-4) << a << " " << b;
            EXPECT_NEAR(back.UpDown, b, 1e-4) << a << " " << b;
        }
    }
    const Vector3 left = DirectionFromAngles(90, 0);
    EXPECT_NEAR(left.X, -1.0f, 1e-7f);
    EXPECT_NEAR(left.Z, 0.0f, 1e-7f);
}

}  // namespace
}  // namespace mw
