#include "model/geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/oof_bytes.h"

namespace mw {
namespace {

using test::ModelWithParents;

std::vector<bool> Flags(const std::vector<bool>& table) {
    return table;
}

TEST(Geometry, ArrayIndex) {
    ModelData m = ModelWithParents({-1, 0, 1});
    EXPECT_EQ(GetArrayIndex(m, -1), -1);
    EXPECT_EQ(GetArrayIndex(m, 2), 2);
    EXPECT_EQ(GetArrayIndex(m, 7), -1);
    EXPECT_EQ(SlotTable(m), (std::vector<int>{0, 1, 2}));
}

TEST(Geometry, PushPopMarks) {
    ModelData chain = ModelWithParents({-1, 0, 1});
    EXPECT_EQ(Flags(chain.PushFlags), (std::vector<bool>{false, false, false}));
    EXPECT_EQ(Flags(chain.PopFlags), (std::vector<bool>{false, false, false}));

    ModelData siblings = ModelWithParents({-1, 0, 0});
    EXPECT_EQ(Flags(siblings.PushFlags), (std::vector<bool>{false, true, false}));
    EXPECT_EQ(Flags(siblings.PopFlags), (std::vector<bool>{false, true, false}));

    // Two roots, the first with a child: slots 0 1 2 = 0, 2, 1.
    ModelData roots = ModelWithParents({-1, -1, 0});
    EXPECT_EQ(Flags(roots.PushFlags), (std::vector<bool>{true, false, false}));
    EXPECT_EQ(Flags(roots.PopFlags), (std::vector<bool>{false, false, true}));
}

TEST(Geometry, MoveSOBJWalksTheHierarchy) {
    ModelData m = ModelWithParents({-1});
    m.Sub(0).Offset = {10, 0, 0};
    m.Sub(0).Vertices = {{{1, 0, 0}, {}, 1}};
    MoveSOBJ(m);
    EXPECT_EQ(m.Header.Min, (Vector3{11, 0, 0}));
    EXPECT_EQ(m.Header.Max, (Vector3{11, 0, 0}));
    EXPECT_EQ(m.Header.Radius, 11.0f);

    // Siblings each start from their parent's offset, not from each other's.
    ModelData s = ModelWithParents({-1, 0, 0});
    for (auto& sub : s.SubObjects)
        sub.Vertices = {{{0, 0, 0}, {}, 1}};
    s.Sub(0).Offset = {1, 0, 0};
    s.Sub(1).Offset = {0, 5, 0};
    s.Sub(2).Offset = {0, -7, 0};
    MoveSOBJ(s);
    EXPECT_EQ(s.Header.Min, (Vector3{1, -7, 0}));
    EXPECT_EQ(s.Header.Max, (Vector3{1, 5, 0}));
}

TEST(Geometry, MovePivotKeepsGeometryInPlace) {
    ModelData m = ModelWithParents({-1, 0});
    m.AttachPoints = {{0, {1, 1, 1}, {}}};
    m.Sub(1).Offset = {2, 0, 0};
    const Vector3 delta{0.5f, 0, 0};
    m.Sub(0).Offset = Add(m.Sub(0).Offset, delta);
    MovePivot(m, 0, delta);
    EXPECT_EQ(m.Sub(0).Vertices[1].Position, (Vector3{0.5f, 0, 0}));
    EXPECT_EQ(m.AttachPoints[0].Position, (Vector3{0.5f, 1, 1}));
    EXPECT_EQ(m.Sub(1).Offset, (Vector3{1.5f, 0, 0}));
    EXPECT_EQ(m.Sub(0).BoxMin, (Vector3{-0.5f, 0, 0}));
    EXPECT_EQ(m.Sub(0).Center, Midpoint(m.Sub(0).BoxMin, m.Sub(0).BoxMax));
}

TEST(Geometry, VertexNormalsOfACube) {
    ModelData m = ModelWithParents({-1});
    SubObject& cube = m.Sub(0);
    cube.Vertices.clear();
    for (int i = 0; i < 8; ++i) {
        cube.Vertices.push_back(
            {{i & 1 ? 1.f : -1.f, i & 2 ? 1.f : -1.f, i & 4 ? 1.f : -1.f}, {}, 1.0f});
    }
    cube.Vertices.push_back({});  // used by no face
    const int sides[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                             {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    const Vector3 normals[6] = {{0, 0, -2}, {0, 0, 1},  {0, -1, 0},
                                {0, 1, 0},  {-1, 0, 0}, {1, 0, 0}};
    cube.Faces.clear();
    cube.Corners.clear();
    for (int f = 0; f < 6; ++f) {
        Face face;
        face.Normal = normals[f];
        face.VertexCount = 4;
        cube.Faces.push_back(face);
        for (int c : sides[f])
            cube.Corners.push_back({c, 0, 0});
    }
    RecalcVertexNormals(m);
    EXPECT_EQ(cube.Faces[0].Normal, (Vector3{0, 0, -1}));  // face normals are normalised
    for (int i = 0; i < 8; ++i) {
        const Vector3 n = cube.Vertices[static_cast<std::size_t>(i)].Normal;
        EXPECT_NEAR(n.X, (i & 1 ? 1 : -1) * 0.57735f, 1e-5);
        EXPECT_NEAR(n.Y, (i & 2 ? 1 : -1) * 0.57735f, 1e-5);
        EXPECT_NEAR(n.Z, (i & 4 ? 1 : -1) * 0.57735f, 1e-5);
    }
    EXPECT_EQ(cube.Vertices[8].Normal, (Vector3{0, 0, 1}));

    // A stored face normal that is infinite or not a number gives (0, 0, 1), not 0/0 in the
    // face and its vertices (found by the edit fuzzer: the reader turns 0/0 into -100000, so
    // such a model did not read back to itself).
    cube.Faces[1].Normal = {std::numeric_limits<float>::infinity(), 0, 0};
    cube.Faces[2].Normal = {0, std::numeric_limits<float>::quiet_NaN(), 0};
    RecalcVertexNormals(m);
    EXPECT_EQ(cube.Faces[1].Normal, (Vector3{0, 0, 1}));
    EXPECT_EQ(cube.Faces[2].Normal, (Vector3{0, 0, 1}));
    for (const Vertex& v : cube.Vertices) {
        EXPECT_TRUE(std::isfinite(v.Normal.X) && std::isfinite(v.Normal.Y) &&
                    std::isfinite(v.Normal.Z));
        EXPECT_NEAR(Length(v.Normal), 1.0f, 1e-5);
    }
}

TEST(Geometry, ScaleModelChecksTheResultingRadius) {
    ModelData m = ModelWithParents({-1});
    m.Header.Radius = 0.15f;
    EXPECT_EQ(ScaleModel(m, 50), ScaleResult::TooSmall);
    EXPECT_EQ(m.Header.Radius, 0.15f);
    m.Header.Radius = 0.2f;
    m.Sub(0).Offset = {2, 4, 6};
    m.Sub(0).GlowSize = 3;
    m.Sub(0).RotateSpeed = 4;
    m.GunPoints = {{0, {2, 2, 2}, {0, 0, 1}}};
    m.Special = SpecialPoint{"", "", {4, 0, 0}, 2};
    m.HasPANI = true;
    m.Sub(0).Pos.Keys = {{0, {8, 0, 0}}};
    EXPECT_EQ(ScaleModel(m, 50), ScaleResult::Done);
    EXPECT_FLOAT_EQ(m.Header.Radius, 0.1f);
    EXPECT_EQ(m.Sub(0).Offset, (Vector3{1, 2, 3}));
    EXPECT_EQ(m.Sub(0).Vertices[1].Position, (Vector3{0.5f, 0, 0}));
    EXPECT_EQ(m.Sub(0).GlowSize, 1.5f);
    EXPECT_EQ(m.Sub(0).RotateSpeed, 4.0f);
    EXPECT_EQ(m.GunPoints[0].Position, (Vector3{1, 1, 1}));
    EXPECT_EQ(m.GunPoints[0].Normal, (Vector3{0, 0, 1}));
    EXPECT_EQ(m.Special->Radius, 1.0f);
    EXPECT_EQ(m.Sub(0).Pos.Keys[0].Position.X, 4.0f);

    m.Header.Radius = 1000;
    EXPECT_EQ(ScaleModel(m, 9000), ScaleResult::Done);  // exactly 90000 is accepted
    EXPECT_EQ(ScaleModel(m, 101), ScaleResult::TooLarge);
}

TEST(Geometry, RotationMatricesChainTheKeys) {
    ModelData m = ModelWithParents({-1});
    m.Sub(0).Rot.Keys = {
        {0, {0, 0, 0}, 0, {}}, {5, {0, 0, 2}, 16384, {}}, {9, {0, 0, 1}, 16384, {}}};
    CalcRotMatrix(m, 0);
    const auto& keys = m.Sub(0).Rot.Keys;
    EXPECT_EQ(keys[0].Matrix, IdentityMatrix());
    EXPECT_EQ(keys[0].Axis, (Vector3{0, 0, 0}));  // a zero axis stays zero
    EXPECT_EQ(keys[1].Axis, (Vector3{0, 0, 1}));
    // Two quarter turns about Z make a half turn.
    EXPECT_NEAR(keys[2].Matrix[0], -1.0f, 1e-6);
    EXPECT_NEAR(keys[2].Matrix[5], -1.0f, 1e-6);
    EXPECT_NEAR(keys[2].Matrix[10], 1.0f, 1e-6);
}

}  // namespace
}  // namespace mw
