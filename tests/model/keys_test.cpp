#include "model/keys.h"

#include <gtest/gtest.h>

#include "model/geometry.h"
#include "support/oof_bytes.h"

namespace mw {
namespace {

using test::ModelWithParents;

ModelData WithPosKeys(std::vector<PosKey> keys) {
    ModelData m = ModelWithParents({-1, 0});
    m.HasPANI = true;
    m.Sub(0).Pos.Keys = std::move(keys);
    m.Sub(0).Pos.FirstFrame = m.Sub(0).Pos.Keys.front().Frame;
    m.Sub(0).Pos.LastFrame = m.Sub(0).Pos.Keys.back().Frame;
    return m;
}

TEST(Keys, LookupFindsTheKeyAtOrBefore) {
    ModelData m = WithPosKeys({{0, {}}, {10, {}}, {20, {}}});
    EXPECT_EQ(GetPANIindex(m, 0, 15, false), 1);
    EXPECT_EQ(GetPANIindex(m, 0, 15, true), -1);
    EXPECT_EQ(GetPANIindex(m, 0, 10, true), 1);
    EXPECT_EQ(GetPANIindex(m, 0, 25, false), 2);
    EXPECT_EQ(GetPANIindex(m, 0, 25, true), -1);
    EXPECT_EQ(GetPANIindex(m, 0, -5, false), -1);
    EXPECT_EQ(GetPANIindex(m, -1, 10, true), -1);
    m.HasPANI = false;
    EXPECT_EQ(GetPANIindex(m, 0, 10, true), -1);
}

TEST(Keys, InsertTakesTheMidpointOfItsNeighbours) {
    ModelData m = WithPosKeys({{0, {}}, {10, {0, 0, 0}}, {20, {10, 0, 0}}});
    ASSERT_TRUE(InsertPANIKey(m, 0, 15));
    const auto& keys = m.Sub(0).Pos.Keys;
    ASSERT_EQ(keys.size(), 4u);
    EXPECT_EQ(keys[2].Frame, 15);
    EXPECT_EQ(keys[2].Position, (Vector3{5, 0, 0}));

    ASSERT_TRUE(InsertPANIKey(m, 0, -4));  // before the first key: half its position
    EXPECT_EQ(m.Sub(0).Pos.Keys[0].Frame, -4);
    EXPECT_EQ(m.Sub(0).Pos.FirstFrame, -4);
    EXPECT_EQ(m.FrameMin, -4);
    EXPECT_EQ(m.FrameMax, 20);

    ASSERT_TRUE(InsertPANIKey(m, 1, 7));  // the first key of another track
    EXPECT_EQ(m.Sub(1).Pos.Keys[0].Position, (Vector3{}));
    EXPECT_EQ(m.Sub(1).Pos.FirstFrame, 7);
}

TEST(Keys, DeletingTheLastKeyClearsThePresenceFlag) {
    ModelData m = WithPosKeys({{3, {1, 1, 1}}});
    EXPECT_FALSE(DeletePANIKey(m, 0, 4));
    ASSERT_TRUE(DeletePANIKey(m, 0, 3));
    EXPECT_FALSE(m.HasPANI);
    EXPECT_EQ(m.Sub(0).Pos.FirstFrame, 99999);
    EXPECT_EQ(m.Sub(0).Pos.LastFrame, -99999);
}

TEST(Keys, MovingKeepsTheKeyValues) {
    ModelData m = ModelWithParents({-1});
    for (int f : {0, 10, 20})
        ASSERT_TRUE(InsertRANIKey(m, 0, f));
    auto& keys = m.Sub(0).Rot.Keys;
    EXPECT_EQ(keys[1].Axis, (Vector3{-1, 0, 0}));
    EXPECT_EQ(keys[1].Angle, 0);
    keys[1].Axis = {0, 1, 0};
    keys[1].Angle = 8192;
    CalcRotMatrix(m, 0);
    ASSERT_TRUE(MoveRANIkey(m, 0, 10, 30));
    ASSERT_EQ(keys.size(), 3u);
    EXPECT_EQ(keys[2].Frame, 30);
    EXPECT_EQ(keys[2].Axis, (Vector3{0, 1, 0}));
    EXPECT_EQ(keys[2].Angle, 8192);
    EXPECT_NE(keys[2].Matrix, IdentityMatrix());
    EXPECT_EQ(keys[1].Frame, 20);
    EXPECT_FALSE(MoveRANIkey(m, 0, 10, 40));

    ModelData p = WithPosKeys({{0, {1, 0, 0}}, {10, {2, 0, 0}}});
    ASSERT_TRUE(MovePANIkey(p, 0, 0, 15));
    EXPECT_EQ(p.Sub(0).Pos.Keys[1].Frame, 15);
    EXPECT_EQ(p.Sub(0).Pos.Keys[1].Position, (Vector3{1, 0, 0}));
    EXPECT_EQ(p.FrameMin, 0);  // the untouched tracks still span frame 0
    EXPECT_EQ(p.FrameMax, 15);
}

TEST(Keys, TracksHaveAtMostAThousandKeys) {
    ModelData m = ModelWithParents({-1});
    for (int f = 0; f < kMaxKeys; ++f)
        ASSERT_TRUE(InsertPANIKey(m, 0, f));
    EXPECT_FALSE(InsertPANIKey(m, 0, kMaxKeys));
    EXPECT_EQ(m.Sub(0).Pos.KeyCount(), kMaxKeys);
}

TEST(Keys, InterpolationHoldsAtTheLastKey) {
    ModelData m = WithPosKeys({{0, {0, 0, 0}}, {10, {10, 0, 0}}});
    EXPECT_EQ(InterpolatedPosition(m, 0, 0, 0.25f), (Vector3{2.5f, 0, 0}));
    EXPECT_EQ(InterpolatedPosition(m, 0, 1, 0.7f), (Vector3{10, 0, 0}));

    m.Sub(0).Rot.Keys = {{0, {0, 0, 1}, 0, {}}, {10, {0, 0, 1}, 16384, {}}};
    CalcRotMatrix(m, 0);
    const Matrix4 last = m.Sub(0).Rot.Keys[1].Matrix;
    EXPECT_EQ(InterpolatedRotation(m, 0, 1, 0.6f), last);
    const Matrix4 half = InterpolatedRotation(m, 0, 0, 0.5f);  // an eighth turn
    EXPECT_NEAR(half[0], 0.70710678f, 1e-6);
}

}  // namespace
}  // namespace mw
