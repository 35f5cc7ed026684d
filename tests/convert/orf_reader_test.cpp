#include "convert/orf_reader.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/alloc_tracker.h"
#include "support/orf_bytes.h"

namespace mw {
namespace {

using test::CubeCorners;
using test::CubeFaces;
using test::OrfBytes;
using test::RoomFaceSpec;

ResultCode Import(ModelData& m, const OrfBytes& room,
                  const GameNameTable& names = GameNameTable::Builtin()) {
    return importORF(m, room.bytes, names);
}

OrfBytes TwoCubes() {
    auto positions = CubeCorners({10, 0, 0}, 1);
    const auto second = CubeCorners({0, 4, -2}, 0.5f);
    positions.insert(positions.end(), second.begin(), second.end());
    auto faces = CubeFaces(0);
    const auto more = CubeFaces(8);
    faces.insert(faces.end(), more.begin(), more.end());
    return OrfBytes::Room(positions, faces);
}

TEST(OrfImport, SeparateCubesBecomeSeparateSubObjectsCentredOnTheirBoxes) {
    ModelData m;
    ASSERT_EQ(Import(m, TwoCubes()), ResultCode::Success);
    ASSERT_EQ(m.SubObjectCount(), 2);
    const SubObject& a = m.Sub(0);
    const SubObject& b = m.Sub(1);
    EXPECT_EQ(a.Name, "Unnamed1");
    EXPECT_EQ(b.Name, "Unnamed2");
    EXPECT_EQ(a.Parent, -1);
    EXPECT_EQ(a.Offset, (Vector3{10, 0, 0}));
    EXPECT_EQ(b.Offset, (Vector3{0, 4, -2}));
    EXPECT_EQ(a.Vertices[0].Position, (Vector3{-1, -1, -1}));
    EXPECT_EQ(b.Vertices[7].Position, (Vector3{0.5f, 0.5f, 0.5f}));
    EXPECT_EQ(a.BoxMin, (Vector3{-1, -1, -1}));
    EXPECT_EQ(a.Center, (Vector3{0, 0, 0}));
    EXPECT_FLOAT_EQ(a.Radius, std::sqrt(3.0f));
    EXPECT_EQ(m.Header.Min, (Vector3{-0.5f, -1, -2.5f}));
    EXPECT_EQ(m.Header.Max, (Vector3{11, 4.5f, 1}));
    EXPECT_FLOAT_EQ(m.Header.Radius, Length({11, 1, 1}));
    // Faces keep their corners and texture coordinates; normals are made unit length.
    ASSERT_EQ(a.FaceCount(), 6);
    EXPECT_EQ(a.Faces[0].Primitive, kPrimQuads);
    EXPECT_NEAR(a.Faces[0].Normal.Z, -1.0f, 1e-6);
    EXPECT_EQ(a.Corners[1].VertexIndex, 2);
    EXPECT_EQ(a.Corners[1].U, 1.0f);
    EXPECT_EQ(b.Corners[1].VertexIndex, 2);  // mapped into the second piece
    // A corner's vertex normal is the mean of its three faces'.
    EXPECT_NEAR(a.Vertices[0].Normal.X, -0.57735f, 1e-4);
    EXPECT_EQ(m.MergeTable, (std::vector<std::vector<int>>{{0}, {1}}));
}

TEST(OrfImport, PiecesAndFacesComeInTheOrderTheScanFindsThem) {
    // Face 2 links faces 0 and 1, and face 1 only joins on the second pass.
    const std::vector<Vector3> positions(9, Vector3{});
    std::vector<RoomFaceSpec> faces = {{{0, 1, 2}}, {{5, 6, 7}}, {{1, 5, 4}}, {{3, 8, 3}}};
    ModelData m;
    ASSERT_EQ(Import(m, OrfBytes::Room(positions, faces)), ResultCode::Success);
    ASSERT_EQ(m.SubObjectCount(), 2);
    EXPECT_EQ(m.Sub(0).FaceCount(), 3);
    // Corners of the piece's faces in the order 0, 2, 1 (through the vertex map 0 1 2 4 5 6 7).
    EXPECT_EQ(m.Sub(0).Corners[3].VertexIndex, 1);
    EXPECT_EQ(m.Sub(0).Corners[6].VertexIndex, 4);
    EXPECT_EQ(m.Sub(1).VertexCount(), 2);
}

TEST(OrfImport, NamesNoTableKnowsAreKeptAsBitmapNames) {
    auto faces = CubeFaces(0);
    faces[1].texture = 1;
    faces[2].texture = 2;
    ModelData m;
    ASSERT_EQ(Import(m,
                     OrfBytes::Room(CubeCorners({}, 1), faces,
                                    {"Ship_Hull", "wing.ogf", "Old.Stone.Wall"}),
                     GameNameTable{}),
              ResultCode::Success);
    ASSERT_EQ(m.Textures.size(), 3u);
    EXPECT_EQ(m.Textures[0].Name, "ship_hull");
    EXPECT_EQ(m.Textures[1].Name, "wing");
    EXPECT_EQ(m.Textures[2].Name, "old");
    EXPECT_EQ(m.Textures[2].LoadedName, "old");
    EXPECT_EQ(m.Textures[2].GameName, "Old.Stone.Wall");
}

TEST(OrfImport, TexturesGoThroughTheGameNameTable) {
    auto faces = CubeFaces(0);
    faces[1].texture = 1;
    faces[2].texture = 2;
    faces[3].texture = -1;
    ModelData m;
    GameNameTable names = GameNameTable::Builtin();
    names.AddRow("Metal Plate", "MetalPlate01");
    names.AddRow("Rainbow Texture", "second row loses");
    ASSERT_EQ(Import(m,
                     OrfBytes::Room(CubeCorners({}, 1), faces,
                                    {"Rainbow Texture", "Metal Plate", "rainbow texture"}),
                     names),
              ResultCode::Success);
    ASSERT_EQ(m.Textures.size(), 3u);
    EXPECT_EQ(m.Textures[0].GameName, "Rainbow Texture");
    EXPECT_EQ(m.Textures[0].Name, "test");
    EXPECT_EQ(m.Textures[0].LoadedName, "test");
    EXPECT_EQ(m.Textures[1].Name, "metalplate01");
    // Names compare with case; a name no table knows is kept, in lower case.
    EXPECT_EQ(m.Textures[2].Name, "rainbow texture");
    // The scan takes the cube's faces in the order 0, 2, 3, 4, 5, 1.
    const Face& plain = m.Sub(0).Faces[2];
    EXPECT_EQ(plain.Textured, 0);
    EXPECT_EQ(plain.TextureIndex, -1);
    EXPECT_EQ(plain.Color, (std::array<std::uint8_t, 4>{255, 255, 255, 255}));
    EXPECT_EQ(m.Sub(0).Faces[5].TextureIndex, 1);
    EXPECT_EQ(m.Sub(0).Faces[1].TextureIndex, 2);
    EXPECT_EQ(m.Sub(0).Faces[1].Textured, 1);
}

TEST(OrfImport, HeaderResults) {
    ModelData m;
    OrfBytes old;
    old.header(3, 8, 6);
    EXPECT_EQ(Import(m, old), ResultCode::ORFVersionTooLow);
    OrfBytes empty;
    empty.header(4, 0, 6);
    EXPECT_EQ(Import(m, empty), ResultCode::NoORFData);
    OrfBytes none;
    EXPECT_EQ(Import(m, none), ResultCode::NoORFData);
    // Faces, but not one corner among them (found by fuzzing): no geometry to import.
    EXPECT_EQ(Import(m, OrfBytes::Room(CubeCorners({}, 1), {RoomFaceSpec{}, RoomFaceSpec{}})),
              ResultCode::NoORFData);
    OrfBytes early;  // vertices before any header
    early.vertices(CubeCorners({}, 1));
    EXPECT_EQ(Import(m, early), ResultCode::ORFReadError);
    EXPECT_TRUE(m.SubObjects.empty());
    EXPECT_STREQ(TranslateError(ResultCode::ORFVersionTooLow), "Roomfile version to low");
}

TEST(OrfImport, UnknownChunksAreSkippedAndTypeZeroIsAHeader) {
    ByteWriter junk;
    junk.raw("whatever is in here");
    OrfBytes room;
    ByteWriter header;
    header.i32(4);
    header.i32(8);
    header.i32(6);
    room.chunk(9, junk).chunk(0, header).vertices(CubeCorners({}, 1)).chunk(77, junk);
    room.faces(CubeFaces(0)).end();
    ModelData m;
    EXPECT_EQ(Import(m, room), ResultCode::Success);
    EXPECT_EQ(m.SubObjectCount(), 1);
}

TEST(OrfImport, LimitsGiveReadErrors) {
    ModelData m;
    // A corner naming a vertex outside the list.
    auto faces = CubeFaces(0);
    faces[0].corners[0] = 8;
    EXPECT_EQ(Import(m, OrfBytes::Room(CubeCorners({}, 1), faces)), ResultCode::ORFReadError);
    // 256 corners in one face.
    std::vector<RoomFaceSpec> big = {{std::vector<int>(256, 0)}};
    EXPECT_EQ(Import(m, OrfBytes::Room({{0, 0, 0}}, big)), ResultCode::ORFReadError);
    big[0].corners.resize(255);
    EXPECT_EQ(Import(m, OrfBytes::Room({{0, 0, 0}}, big)), ResultCode::Success);
    // 257 separate triangles are more pieces than a model can hold.
    std::vector<Vector3> positions;
    std::vector<RoomFaceSpec> triangles;
    for (int i = 0; i < 257; ++i) {
        for (int c = 0; c < 3; ++c)
            positions.push_back({static_cast<float>(i), static_cast<float>(c), 0});
        triangles.push_back({{3 * i, 3 * i + 1, 3 * i + 2}});
    }
    EXPECT_EQ(Import(m, OrfBytes::Room(positions, triangles)), ResultCode::ORFReadError);
    triangles.pop_back();
    EXPECT_EQ(Import(m, OrfBytes::Room(positions, triangles)), ResultCode::Success);
    EXPECT_EQ(m.SubObjectCount(), 256);
}

TEST(OrfImport, TruncationsAndHugeCountsEndWithAReadResult) {
    const OrfBytes room = TwoCubes();
    for (std::size_t n = 0; n < room.bytes.size(); ++n) {
        OrfBytes cut;
        cut.bytes.assign(room.bytes.begin(), room.bytes.begin() + static_cast<std::ptrdiff_t>(n));
        ModelData m;
        const ResultCode r = Import(m, cut);
        ASSERT_TRUE(r == ResultCode::Success || r == ResultCode::NoORFData ||
                    r == ResultCode::ORFReadError)
            << n;
        if (r != ResultCode::Success) {
            ASSERT_TRUE(m.SubObjects.empty()) << n;
        }
    }
    OrfBytes huge;
    huge.header(4, 0x7FFFFFFF, 0x7FFFFFFF).vertices(CubeCorners({}, 1)).faces(CubeFaces(0)).end();
    ModelData m;
    test::ResetLargestAllocation();
    EXPECT_EQ(Import(m, huge), ResultCode::ORFReadError);
    EXPECT_LT(test::LargestAllocation(), 16 * huge.bytes.size() + 4096);
}

}  // namespace
}  // namespace mw
