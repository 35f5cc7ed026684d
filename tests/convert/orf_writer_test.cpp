#include "convert/orf_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "convert/orf_reader.h"
#include "model/file_io.h"
#include "model/geometry.h"
#include "sample_model.h"
#include "support/oof_bytes.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

// Every face of a model as its corner positions in model space, rounded, sorted.
std::vector<std::vector<std::array<long, 3>>> FacesInModelSpace(const ModelData& m) {
    std::vector<std::vector<std::array<long, 3>>> faces;
    for (int slot = 0; slot < m.SubObjectCount(); ++slot) {
        const Vector3 offset = WorldOffset(m, m.Head(slot));
        for (int member : m.MergeTable[static_cast<std::size_t>(slot)]) {
            const SubObject& sub = m.Sub(member);
            std::size_t c = 0;
            for (const Face& f : sub.Faces) {
                std::vector<std::array<long, 3>> corners;
                for (int k = 0; k < f.VertexCount; ++k, ++c) {
                    const Vector3 p = Add(
                        sub.Vertices[static_cast<std::size_t>(sub.Corners[c].VertexIndex)].Position,
                        offset);
                    corners.push_back({std::lround(p.X * 1000), std::lround(p.Y * 1000),
                                       std::lround(p.Z * 1000)});
                }
                faces.push_back(corners);
            }
        }
    }
    std::sort(faces.begin(), faces.end());
    return faces;
}

ModelData ReadRoom(const std::string& path, const GameNameTable& names = GameNameTable::Builtin()) {
    ModelData m;
    EXPECT_EQ(importORF(m, *ReadFileBytes(path), names), ResultCode::Success) << path;
    return m;
}

class OrfExportTest : public ::testing::Test {
  protected:
    OrfExportTest() : dir_("orf_export") {}
    std::string Path(const std::string& name) const { return (dir_ / name).string(); }
    test::TempDir dir_;
};

TEST_F(OrfExportTest, ARoomReadsBackAsTheSameFacesInModelSpace) {
    ModelData ship = BuildSampleModel();
    ship.Textures[0].GameName = "Rainbow Texture";
    const OrfExportResult r = SaveORF(ship, Path("ship.orf"), {true, false, 1.0f});
    ASSERT_TRUE(r.Written) << r.Message;
    EXPECT_EQ(r.Files, (std::vector<std::string>{Path("ship.orf")}));
    ModelData room = ReadRoom(Path("ship.orf"));
    EXPECT_EQ(FacesInModelSpace(room), FacesInModelSpace(ship));
    // Parts that touch nothing come back as separate pieces, each centred on its box.
    EXPECT_EQ(room.SubObjectCount(), 7);
    for (const SubObject& sub : room.SubObjects) {
        EXPECT_NEAR(sub.Center.X, 0.0f, 1e-5);
        EXPECT_NEAR(sub.Center.Y, 0.0f, 1e-5);
    }
    // Game names go out; the table brings back the bitmap name, the rest keep theirs.
    EXPECT_EQ(room.Textures[0].GameName, "Rainbow Texture");
    EXPECT_EQ(room.Textures[0].Name, "test");
    EXPECT_EQ(room.Textures[1].GameName, "ship_wing");
    // Without game data every name comes back: a room to a model keeps its textures.
    for (std::size_t t = 1; t < ship.Textures.size(); ++t)
        EXPECT_EQ(room.Textures[t].Name, ship.Textures[t].Name) << t;
}

TEST_F(OrfExportTest, OffsetsAreFlattenedThroughTheHierarchy) {
    ModelData m = test::ModelWithParents({-1, 0});
    m.Sub(0).Offset = {10, 0, 0};
    m.Sub(1).Offset = {0, 5, 0};
    ASSERT_TRUE(SaveORF(m, Path("h.orf"), {true, false, 1.0f}).Written);
    const auto bytes = *ReadFileBytes(Path("h.orf"));
    ByteReader r(bytes);
    r.skip(8 + 12 + 8);                        // header chunk, vertex chunk header
    r.skip(3 * 12);                            // the root's triangle
    r.skip(12);                                // the child's first vertex (0, 0, 0)
    EXPECT_EQ(r.vec3(), (Vector3{11, 5, 0}));  // its (1, 0, 0)
}

TEST_F(OrfExportTest, TexturesAndTheEndChunk) {
    ModelData m = test::ModelWithParents({-1});
    // The name is made from the part before ".orf" in any case, with ".orf" after it.
    EXPECT_EQ(SaveORF(m, Path("plain.ORF"), {true, false, 1.0f}).Files,
              (std::vector<std::string>{Path("plain.orf")}));
    const auto bytes = ReadFileBytes(Path("plain.orf")).value_or(std::vector<std::uint8_t>(8));
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_NE(text.find(std::string("SAMPLE TEXTURE") + '\0'), std::string::npos);
    const std::vector<std::uint8_t> end{3, 0, 0, 0, 4, 0, 0, 0};
    EXPECT_TRUE(std::equal(end.begin(), end.end(), bytes.end() - 8));

    m.Textures = {{"", "brick.ogf", "brick.ogf"}};
    ASSERT_TRUE(SaveORF(m, Path("named.orf"), {true, false, 1.0f}).Written);
    EXPECT_EQ(ReadRoom(Path("named.orf")).Textures[0].GameName, "brick");
}

TEST_F(OrfExportTest, SeparateRoomsAreNumberedBySlot) {
    ModelData m = test::ModelWithParents({-1, 0, 0});
    const OrfExportResult r = SaveORF(m, Path("ship.orf"), {false, false, 1.0f});
    ASSERT_TRUE(r.Written);
    EXPECT_EQ(r.Files, (std::vector<std::string>{Path("ship00.orf"), Path("ship01.orf"),
                                                 Path("ship02.orf")}));
    EXPECT_EQ(ReadRoom(Path("ship01.orf")).Sub(0).VertexCount(), 3);

    ModelData one = test::ModelWithParents({-1});
    EXPECT_EQ(SaveORF(one, Path("single.orf"), {false, false, 1.0f}).Files,
              (std::vector<std::string>{Path("single.orf")}));
}

TEST_F(OrfExportTest, RefusalsWriteNothing) {
    ModelData m = test::ModelWithParents({-1});
    EXPECT_FALSE(SaveORF(m, Path("ship.oof"), {}).Written);
    m.Sub(0).Vertices.resize(32769);
    const OrfExportResult r = SaveORF(m, Path("big.orf"), {true, false, 1.0f});
    EXPECT_FALSE(r.Written);
    EXPECT_NE(r.Message.find("32768"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(Path("big.orf")));
    m.Sub(0).Vertices.resize(32768);
    EXPECT_TRUE(SaveORF(m, Path("big.orf"), {true, false, 1.0f}).Written);
}

TEST_F(OrfExportTest, PointsBecomeSquareMarkerFaces) {
    const auto corners = MarkerCorners({1, 2, 3}, {0, 0, 5}, 2.0f);
    const Vector3 want[4] = {{2, 3, 3}, {0, 3, 3}, {0, 1, 3}, {2, 1, 3}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_NEAR(corners[static_cast<std::size_t>(i)].X, want[i].X, 1e-6);
        EXPECT_NEAR(corners[static_cast<std::size_t>(i)].Y, want[i].Y, 1e-6);
        EXPECT_NEAR(corners[static_cast<std::size_t>(i)].Z, want[i].Z, 1e-6);
    }
    // Any normal gives a square of the face size lying across it.
    for (Vector3 n : {Vector3{1, 0, 0}, Vector3{0, -1, 0}, Vector3{0, 1, 0}, Vector3{-1, 2, -3},
                      Vector3{0, 0, -1}}) {
        const auto c = MarkerCorners({}, n, 1.0f);
        const Vector3 unit = Normalize(n);
        for (int i = 0; i < 4; ++i) {
            const Vector3 p = c[static_cast<std::size_t>(i)];
            EXPECT_NEAR(Length(p), std::sqrt(0.5f), 1e-5);
            EXPECT_NEAR(p.X * unit.X + p.Y * unit.Y + p.Z * unit.Z, 0.0f, 1e-5);
            EXPECT_NEAR(Length(Subtract(p, c[static_cast<std::size_t>((i + 1) % 4)])), 1.0f, 1e-5);
        }
    }

    ModelData ship = BuildSampleModel();
    ASSERT_TRUE(SaveORF(ship, Path("points.orf"), {true, true, 0.5f}).Written);
    ModelData room = ReadRoom(Path("points.orf"));
    int faces = 0;
    for (const SubObject& s : room.SubObjects)
        faces += s.FaceCount();
    const std::size_t points = ship.AttachPoints.size() + ship.AttachNormals.size() +
                               ship.GroundPoints.size() + ship.GunPoints.size();
    int shipFaces = 0;
    for (const SubObject& s : ship.SubObjects)
        shipFaces += s.FaceCount();
    EXPECT_EQ(faces, shipFaces + static_cast<int>(points));
}

}  // namespace
}  // namespace mw
