// Triangles joined back into the polygons they were cut from, and the ones that must stay
// apart: other planes, other textures, a seam in the texture places, a concave outline, the
// corner limit.
#include "convert/polygon_merge.h"

#include <gtest/gtest.h>

namespace mw {
namespace {

// A sub-object of the given places and triangles (corners as listed), each face's normal
// from its corners, texture places = the x and y of each place.
SubObject Triangles(const std::vector<Vector3>& places, const std::vector<int>& corners,
                    std::vector<int> textures = {}) {
    SubObject sub;
    for (const Vector3& p : places)
        sub.Vertices.push_back({p, {0, 0, 1}});
    for (std::size_t f = 0; f < corners.size() / 3; ++f) {
        Face face;
        face.VertexCount = 3;
        face.Primitive = PrimitiveFor(3);
        face.TextureIndex = textures.empty() ? 0 : textures[f];
        face.Textured = 1;
        const Vector3 a = places[static_cast<std::size_t>(corners[3 * f])];
        const Vector3 b = places[static_cast<std::size_t>(corners[3 * f + 1])];
        const Vector3 c = places[static_cast<std::size_t>(corners[3 * f + 2])];
        const Vector3 u = Subtract(b, a), v = Subtract(c, a);
        face.Normal =
            Normalize({u.Y * v.Z - u.Z * v.Y, u.Z * v.X - u.X * v.Z, u.X * v.Y - u.Y * v.X});
        sub.Faces.push_back(face);
        for (int k = 0; k < 3; ++k) {
            const Vector3 p = places[static_cast<std::size_t>(corners[3 * f + k])];
            sub.Corners.push_back({corners[3 * f + k], p.X, p.Y});
        }
    }
    return sub;
}

std::vector<int> Sizes(const SubObject& sub) {
    std::vector<int> out;
    for (const Face& f : sub.Faces)
        out.push_back(f.VertexCount);
    return out;
}

TEST(PolygonMerge, AQuadAndAnOctagonBecomeOneFaceEach) {
    SubObject quad = Triangles({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {0, 1, 2, 0, 2, 3});
    EXPECT_EQ(MergeCoplanarTriangles(quad, 99), 1);
    ASSERT_EQ(Sizes(quad), std::vector<int>{4});
    // The corners go round the outline once, in the triangles' turning sense.
    std::vector<int> loop;
    for (const FaceVertex& c : quad.Corners)
        loop.push_back(c.VertexIndex);
    EXPECT_EQ(loop, (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(quad.Corners[2].U, 1.0f);

    // An octagon as a fan from its first corner (6 triangles), as exporters cut it.
    std::vector<Vector3> ring;
    for (int i = 0; i < 8; ++i)
        ring.push_back({std::cos(i * 0.785398f), std::sin(i * 0.785398f), 0.5f});
    std::vector<int> fan;
    for (int i = 1; i < 7; ++i)
        fan.insert(fan.end(), {0, i, i + 1});
    SubObject octagon = Triangles(ring, fan);
    EXPECT_EQ(MergeCoplanarTriangles(octagon, 99), 5);
    EXPECT_EQ(Sizes(octagon), std::vector<int>{8});
    // Where a glow part allows only a few corners, the octagon stays in pieces that fit.
    SubObject limited = Triangles(ring, fan);
    MergeCoplanarTriangles(limited, 4);
    for (int size : Sizes(limited))
        EXPECT_LE(size, 4);
}

TEST(PolygonMerge, AConcaveOutlineIsNotOnePolygon) {
    // An L: (0,0) (2,0) (2,1) (1,1) (1,2) (0,2), cut into four triangles.
    SubObject l = Triangles({{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0}, {1, 2, 0}, {0, 2, 0}},
                            {0, 1, 2, 0, 2, 3, 0, 3, 4, 0, 4, 5});
    MergeCoplanarTriangles(l, 99);
    EXPECT_GE(l.FaceCount(), 2);
    int corners = 0;
    for (int size : Sizes(l))
        corners += size;
    EXPECT_EQ(static_cast<std::size_t>(corners), l.Corners.size());
}

TEST(PolygonMerge, OtherPlanesTexturesAndSeamsStayApart) {
    // Folded along x = 1: two planes.
    SubObject folded = Triangles({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {1, 0, 1}}, {0, 1, 2, 1, 3, 2});
    EXPECT_EQ(MergeCoplanarTriangles(folded, 99), 0);
    EXPECT_EQ(folded.FaceCount(), 2);
    // Two textures on one flat square.
    SubObject two =
        Triangles({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {0, 1, 2, 0, 2, 3}, {0, 1});
    EXPECT_EQ(MergeCoplanarTriangles(two, 99), 0);
    // A seam: the shared corners have other texture places in the second triangle.
    SubObject seam = Triangles({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {0, 1, 2, 0, 2, 3});
    seam.Corners[3].U = 0.5f;
    EXPECT_EQ(MergeCoplanarTriangles(seam, 99), 0);
    // A face of the file's own (a quad) is left alone even beside a triangle in its plane.
    SubObject mixed = Triangles({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0, 0}}, {1, 4, 2});
    mixed.Faces.insert(mixed.Faces.begin(), mixed.Faces[0]);
    mixed.Faces[0].VertexCount = 4;
    mixed.Corners.insert(mixed.Corners.begin(), {{0, 0, 0}, {1, 1, 0}, {2, 1, 1}, {3, 0, 1}});
    EXPECT_EQ(MergeCoplanarTriangles(mixed, 99), 0);
    EXPECT_EQ(Sizes(mixed), (std::vector<int>{4, 3}));
}

}  // namespace
}  // namespace mw
