#include "model/key_edits.h"

#include <gtest/gtest.h>

#include <cmath>

#include "model/geometry.h"
#include "model/key_clipboard.h"
#include "model/keys.h"
#include "support/oof_bytes.h"

namespace mw {
namespace {

// Sub-object 0 with position keys at 10 and 20 and rotation keys at 0, 10 and 20;
// sub-object 1 (a child) without keys. Axes are deliberately not unit length.
ModelData Animated() {
    ModelData m = test::ModelWithParents({-1, 0});
    m.HasPANI = m.HasRANI = true;
    auto& pos = m.Sub(0).Pos;
    pos.Keys = {{10, {1, 2, 3}}, {20, {4, 5, 6}}};
    pos.FirstFrame = 10;
    pos.LastFrame = 20;
    auto& rot = m.Sub(0).Rot;
    rot.Keys = {{0, {0, 2, 0}, 0, {}}, {10, {0, 1, 0}, 8192, {}}, {20, {0.5f, 0, 0}, -4000, {}}};
    rot.FirstFrame = 0;
    rot.LastFrame = 20;
    CalcRotMatrix(m, 0);
    RecalcFrameRange(m);
    return m;
}

float MaxDifference(const Matrix4& a, const Matrix4& b) {
    float worst = 0.0f;
    for (int i = 0; i < 16; ++i)
        worst = std::max(worst, std::fabs(a[i] - b[i]));
    return worst;
}

TEST(KeyEdits, DegreesBecomeUnitsRoundedHalfToEven) {
    EXPECT_EQ(DegreesToKeyAngle(90.0), 16384);
    EXPECT_EQ(DegreesToKeyAngle(-90.0), -16384);
    EXPECT_EQ(DegreesToKeyAngle(360.0), 65536);
    EXPECT_EQ(DegreesToKeyAngle(0.01), 2);  // 1.82
    // 2.5 and 3.5 units: halves go to the even neighbour.
    EXPECT_EQ(DegreesToKeyAngle(2.5 / 182.044444444444), 2);
    EXPECT_EQ(DegreesToKeyAngle(3.5 / 182.044444444444), 4);
    EXPECT_DOUBLE_EQ(KeyAngleToDegrees(16384), 90.0);
    EXPECT_DOUBLE_EQ(KeyAngleToDegrees(-32768), -180.0);
}

Matrix4 Transposed(const Matrix4& m) {
    Matrix4 t = m;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c)
            t[4 * r + c] = m[4 * c + r];
    }
    return t;
}

// The conversion gives the rotation that undoes the matrix: a key with that axis and angle
// brings the orientation the matrix holds back to the start.
TEST(KeyEdits, MatrixToAxisAndAngleUndoesTheMatrix) {
    // Every branch of the quaternion: positive trace, and each largest diagonal element
    // (turns near half a turn about x, y and z), plus more than half a turn (wrapped).
    const struct {
        Vector3 axis;
        int angle;
    } cases[] = {{{0, 1, 0}, 8192},
                 {{0.6f, 0.8f, 0}, -12000},
                 {{1, 0, 0}, 32000},
                 {{0, 1, 0}, 31000},
                 {{0, 0, 1}, 30000},
                 {{0.2f, 0.3f, 0.93f}, 40000},
                 {{-0.5f, 0.5f, 0.7071f}, -20000}};
    for (const auto& c : cases) {
        const Matrix4 m = AxisAngleMatrix(KeyAngleToRadians(c.angle), Normalize(c.axis));
        const AxisAngle back = MatrixToAxisAngle(m);
        EXPECT_NEAR(Length(back.Axis), 1.0f, 1e-5f);
        EXPECT_LE(std::abs(back.Angle), 32768);
        const Matrix4 rebuilt = AxisAngleMatrix(KeyAngleToRadians(back.Angle), back.Axis);
        EXPECT_LT(MaxDifference(Transposed(m), rebuilt), 2e-4f) << c.angle;
    }
    const AxisAngle identity = MatrixToAxisAngle(IdentityMatrix());
    EXPECT_EQ(identity.Axis, (Vector3{-1, 0, 0}));
    EXPECT_EQ(identity.Angle, 0);
}

TEST(KeyEdits, ValueEditsTouchOnlyTheKeyAtTheFrame) {
    ModelData m = Animated();
    EXPECT_FALSE(SetPANIPosition(m, 0, 15, {9, 9, 9}));
    EXPECT_TRUE(SetPANIPosition(m, 0, 20, {9, 9, 9}));
    EXPECT_EQ(m.Sub(0).Pos.Keys[1].Position, (Vector3{9, 9, 9}));
    EXPECT_FALSE(SetPANIPosition(m, 0, 20, {9, 9, 9}));  // already there

    const Matrix4 before = m.Sub(0).Rot.Keys[2].Matrix;
    EXPECT_TRUE(SetRANIAngle(m, 0, 10, DegreesToKeyAngle(90.0)));
    EXPECT_EQ(m.Sub(0).Rot.Keys[1].Angle, 16384);
    EXPECT_GT(MaxDifference(before, m.Sub(0).Rot.Keys[2].Matrix), 0.1f);  // recomputed

    EXPECT_TRUE(MirrorRANIAxis(m, 0, 10, 1));
    EXPECT_EQ(m.Sub(0).Rot.Keys[1].Axis, (Vector3{0, -1, 0}));
    EXPECT_FALSE(MirrorRANIAxis(m, 0, 5, 1));
    EXPECT_FALSE(MirrorRANIAxis(m, 1, 10, 1));
    EXPECT_TRUE(SetRANIAxis(m, 0, 20, {0, 0, 3}));
    EXPECT_EQ(m.Sub(0).Rot.Keys[2].Axis, (Vector3{0, 0, 1}));  // stored unit length
}

TEST(KeyEdits, MovingKeysFollowsTheFilter) {
    ModelData m = Animated();
    EXPECT_TRUE(MoveKeysAt(m, 0, 10, 12, KeyFilter::Positional));
    EXPECT_EQ(GetPANIindex(m, 0, 12, true), 0);
    EXPECT_EQ(GetRANIindex(m, 0, 10, true), 1);  // the rotation key stayed
    EXPECT_EQ(m.Sub(0).Pos.Keys[0].Position, (Vector3{1, 2, 3}));
    EXPECT_TRUE(MoveKeysAt(m, 0, 20, 30, KeyFilter::All));
    EXPECT_EQ(m.Sub(0).Pos.LastFrame, 30);
    EXPECT_EQ(m.Sub(0).Rot.LastFrame, 30);
    EXPECT_EQ(m.Sub(0).Rot.Keys[2].Angle, -4000);
    EXPECT_EQ(m.FrameMax, 30);
    EXPECT_FALSE(MoveKeysAt(m, 0, 7, 8, KeyFilter::All));
}

TEST(KeyEdits, KeyNavigationStopsAtTheEnds) {
    const ModelData m = Animated();
    EXPECT_EQ(NeighbourKeyFrame(m, 0, false, 10, -1), -1);  // at the first key
    EXPECT_EQ(NeighbourKeyFrame(m, 0, false, 10, +1), 20);
    EXPECT_EQ(NeighbourKeyFrame(m, 0, false, 20, +1), -1);  // at the last key
    EXPECT_EQ(NeighbourKeyFrame(m, 0, false, 15, -1), 10);  // between keys
    EXPECT_EQ(NeighbourKeyFrame(m, 0, false, 15, +1), 20);
    EXPECT_EQ(NeighbourKeyFrame(m, 0, false, 3, +1), 10);  // before the first key
    EXPECT_EQ(NeighbourKeyFrame(m, 0, false, 3, -1), -1);
    EXPECT_EQ(NeighbourKeyFrame(m, 0, true, 20, -1), 10);
    EXPECT_EQ(NeighbourKeyFrame(m, 0, true, 0, -1), -1);
    EXPECT_EQ(NeighbourKeyFrame(m, 1, true, 0, +1), -1);  // no keys
}

TEST(KeyEdits, SubToStartInsertsAndZeroes) {
    ModelData m = Animated();
    ASSERT_TRUE(SubToStart(m, 0, 15));  // no key at 15 of either kind
    const int p = GetPANIindex(m, 0, 15, true);
    ASSERT_GE(p, 0);
    EXPECT_EQ(m.Sub(0).Pos.Keys[static_cast<std::size_t>(p)].Position, (Vector3{0, 0, 0}));
    EXPECT_EQ(m.Sub(0).Pos.KeyCount(), 3);
    const int r = GetRANIindex(m, 0, 15, true);
    ASSERT_GE(r, 0);
    // The inserted key turns the orientation reached at key 10 back to the start.
    EXPECT_NE(m.Sub(0).Rot.Keys[1].Matrix, IdentityMatrix());
    const RotKey& key = m.Sub(0).Rot.Keys[static_cast<std::size_t>(r)];
    EXPECT_LT(MaxDifference(key.Matrix, IdentityMatrix()), 2e-4f);
    EXPECT_FALSE(SubToStart(m, 1, 15));  // no keys: nothing inserted
    EXPECT_EQ(m.Sub(1).Pos.KeyCount(), 0);
    EXPECT_TRUE(AllSubsToStart(m, 20));
    EXPECT_EQ(m.Sub(0).Pos.Keys.back().Position, (Vector3{0, 0, 0}));
}

TEST(KeyClipboard, TheFilterLimitsCopyAndPaste) {
    ModelData m = Animated();
    KeyClipboard clip;
    EXPECT_FALSE(CopyKey(m, 0, 10, KeyFilter::Positional, false, clip));
    ASSERT_TRUE(clip.singleKeyHeld);
    ASSERT_TRUE(clip.Position);
    EXPECT_FALSE(clip.Rotation);

    clip.Rotation = m.Sub(0).Rot.Keys[2];  // held from an earlier copy
    const int rotations = m.Sub(0).Rot.KeyCount();
    EXPECT_TRUE(PasteKey(m, 0, 5, KeyFilter::Positional, clip));
    EXPECT_EQ(m.Sub(0).Rot.KeyCount(), rotations);
    const int p = GetPANIindex(m, 0, 5, true);
    ASSERT_GE(p, 0);
    EXPECT_EQ(m.Sub(0).Pos.Keys[static_cast<std::size_t>(p)].Position, (Vector3{1, 2, 3}));

    // Pasting where a key sits overwrites it.
    const int positions = m.Sub(0).Pos.KeyCount();
    EXPECT_TRUE(PasteKey(m, 0, 20, KeyFilter::All, clip));
    EXPECT_EQ(m.Sub(0).Pos.KeyCount(), positions);
    EXPECT_EQ(m.Sub(0).Rot.KeyCount(), rotations);
    EXPECT_EQ(m.Sub(0).Pos.Keys.back().Position, (Vector3{1, 2, 3}));
    EXPECT_EQ(m.Sub(0).Rot.Keys.back().Angle, -4000);

    // Cut with the rotational filter removes only the rotation key.
    EXPECT_TRUE(CopyKey(m, 0, 10, KeyFilter::Rotational, true, clip));
    EXPECT_LT(GetRANIindex(m, 0, 10, true), 0);
    EXPECT_GE(GetPANIindex(m, 0, 10, true), 0);
    EXPECT_EQ(clip.Rotation->Angle, 8192);
}

TEST(KeyClipboard, AllKeysKeepTheirFramesRelativeToTheStart) {
    ModelData m = Animated();
    KeyClipboard clip;
    CopyAllKeys(m, 0, 5, 25, KeyFilter::Positional, false, clip);
    ASSERT_TRUE(clip.allKeysHeld);
    ASSERT_EQ(clip.AllPositions.size(), 2u);
    EXPECT_TRUE(clip.AllRotations.empty());
    EXPECT_TRUE(PasteAllKeys(m, 0, 40, KeyFilter::All, clip));
    std::vector<int> frames;
    for (const PosKey& k : m.Sub(0).Pos.Keys)
        frames.push_back(k.Frame);
    EXPECT_EQ(frames, (std::vector<int>{10, 20, 45, 55}));
    EXPECT_EQ(m.Sub(0).Pos.Keys[3].Position, (Vector3{4, 5, 6}));
    EXPECT_EQ(m.FrameMax, 55);

    // Cut All over the whole range empties the tracks; pasting past the last frame is refused.
    KeyClipboard all;
    EXPECT_TRUE(CopyAllKeys(m, 0, 0, 60, KeyFilter::All, true, all));
    EXPECT_EQ(all.AllPositions.size(), 4u);
    EXPECT_EQ(all.AllRotations.size(), 3u);
    EXPECT_EQ(m.Sub(0).Pos.KeyCount(), 0);
    EXPECT_EQ(m.Sub(0).Rot.KeyCount(), 0);
    EXPECT_TRUE(PasteAllKeys(m, 1, 980, KeyFilter::All, all));
    // Positions at 10, 20, 45 and 55 land at 990 only; rotations at 0, 10, 20 at 980, 990.
    EXPECT_EQ(m.Sub(1).Pos.KeyCount(), 1);
    EXPECT_EQ(m.Sub(1).Rot.KeyCount(), 2);
}

}  // namespace
}  // namespace mw
