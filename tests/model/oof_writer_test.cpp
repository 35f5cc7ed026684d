#include "model/oof_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "cli/cli.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/structure.h"
#include "sample_model.h"
#include "support/oof_bytes.h"

namespace mw {
namespace {

using test::OofBytes;

std::vector<std::string> ChunkIds(const std::vector<std::uint8_t>& bytes) {
    ByteReader r(bytes);
    r.skip(8);
    std::vector<std::string> ids;
    while (r.remaining() >= 8) {
        ids.push_back(r.text(4));
        r.skip(static_cast<std::size_t>(r.i32()));
    }
    EXPECT_TRUE(r.ok());
    EXPECT_EQ(r.remaining(), 0u);
    return ids;
}

ModelData ReadBack(const std::vector<std::uint8_t>& bytes) {
    ModelData m;
    EXPECT_EQ(readOOF(m, bytes), ResultCode::Success);
    CreatePushPop(m);
    return m;
}

ModelData MinimalModel() {
    ModelData m;
    EXPECT_EQ(readOOF(m, OofBytes().header(1).sub(OofBytes::Triangle(0)).bytes),
              ResultCode::Success);
    return m;
}

TEST(OofWriter, MinimalModelHasOnlyTheRequiredChunks) {
    ModelData m = MinimalModel();
    const auto bytes = WriteOOF(m);
    EXPECT_EQ(ChunkIds(bytes), (std::vector<std::string>{"OHDR", "SOBJ", "PINF"}));
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 4), "PSPO");
    EXPECT_EQ(m.Version, 2300);
    EXPECT_EQ(m.PinfText, WriterInfo());
    EXPECT_TRUE(WriterInfo().starts_with("\nMeshwright v0."));
}

TEST(OofWriter, ChunkOrderOfAFullModel) {
    ModelData m = BuildSampleModel();
    m.Special = SpecialPoint{"$special", "", {1, 2, 3}, 0.5f};
    EXPECT_EQ(ChunkIds(WriteOOF(m)),
              (std::vector<std::string>{"TXTR", "OHDR", "SOBJ", "SOBJ", "SOBJ", "SOBJ", "SOBJ",
                                        "SOBJ", "SOBJ", "SPCL", "ATCH", "NATH", "GRND", "GPNT",
                                        "WBAT", "PANI", "RANI", "PINF"}));
}

TEST(OofWriter, ReadWriteReadKeepsTheModel) {
    ModelData sample = BuildSampleModel();
    sample.Special = SpecialPoint{"$special", "extra", {1, 2, 3}, 0.5f};
    const ModelData a = ReadBack(WriteOOF(sample));
    ModelData copy = a;
    const auto w1 = WriteOOF(copy);
    ModelData b = ReadBack(w1);
    const auto w2 = WriteOOF(b);
    ModelData c = ReadBack(w2);
    EXPECT_EQ(ModelJson(c, true), ModelJson(a, true));
    EXPECT_EQ(WriteOOF(c), w1);

    // Between two saves only the axes of keys with angle 0 differ: the writer turns every
    // angle of 0 or less about the opposite axis.
    int flipped = 0;
    for (SubObject& sub : b.SubObjects) {
        for (RotKey& k : sub.Rot.Keys) {
            if (k.Angle == 0) {
                k.Axis = {-k.Axis.X, -k.Axis.Y, -k.Axis.Z};
                ++flipped;
            }
        }
    }
    EXPECT_GT(flipped, 0);
    EXPECT_EQ(WriteOOF(b), w1);
}

TEST(OofWriter, OlderFilesComeBackAsVersion2300WithTheirGeometry) {
    // Version 2299, a header list, a skipped block, IDTA and ANIM: the writer drops what it
    // does not keep and the model reads back the same.
    test::RawSub s = OofBytes::Triangle(0);
    s.skipped = {5, 6};
    ByteWriter anim;
    anim.i32(1);
    anim.i32(0);
    anim.i32(0);
    anim.i32(0);
    anim.vec3({0, 0, 1});
    anim.i32(-100);
    ByteWriter idta;
    idta.raw("ignored");
    ByteWriter header;
    header.i32(1);
    header.f32(2);
    header.vec3({});
    header.vec3({});
    header.i32(2);
    header.i32(7);
    header.i32(8);
    auto f = OofBytes(2299).chunk("OHDR", header).chunk("IDTA", idta).sub(s).chunk("ANIM", anim);
    ModelData old;
    ASSERT_EQ(readOOF(old, f.bytes), ResultCode::Success);
    EXPECT_EQ(old.HeaderList.size(), 2u);
    const auto bytes = WriteOOF(old);
    EXPECT_EQ(ChunkIds(bytes), (std::vector<std::string>{"OHDR", "SOBJ", "RANI", "PINF"}));
    ModelData back = ReadBack(bytes);
    EXPECT_EQ(back.Version, 2300);
    EXPECT_TRUE(back.HeaderList.empty());
    EXPECT_EQ(back.Sub(0).Vertices.size(), 3u);
    EXPECT_EQ(back.Sub(0).Rot.Keys[0].Angle, 100);
    EXPECT_EQ(back.Sub(0).Rot.Keys[0].Axis, (Vector3{0, 0, -1}));
}

TEST(OofWriter, NegativeAndZeroAnglesFlipTheAxis) {
    ModelData m = MinimalModel();
    m.HasRANI = true;
    m.Sub(0).Rot = {0, 1, {{0, {0, 1, 0}, -16384, {}}, {1, {1, 0, 0}, 0, {}}}};
    ModelData back = ReadBack(WriteOOF(m));
    const auto& keys = back.Sub(0).Rot.Keys;
    EXPECT_EQ(keys[0].Angle, 16384);
    EXPECT_EQ(keys[0].Axis, (Vector3{0, -1, 0}));
    EXPECT_EQ(keys[1].Angle, 0);
    EXPECT_EQ(keys[1].Axis, (Vector3{-1, 0, 0}));
    EXPECT_TRUE(std::signbit(keys[1].Axis.Y));  // written as -0
}

TEST(OofWriter, MergedSlotBecomesOneSubObject) {
    ModelData m;
    ASSERT_EQ(
        readOOF(
            m, OofBytes().header(2).sub(OofBytes::Triangle(0)).sub(OofBytes::Triangle(1, 0)).bytes),
        ResultCode::Success);
    m.Sub(1).Offset = {4, 0, 0};
    m.HasPANI = true;
    m.Sub(0).Pos = {3, 3, {{3, {1, 1, 1}}}};
    m.Sub(1).Pos = {5, 5, {{5, {2, 2, 2}}}};
    ASSERT_TRUE(CombineAndAdopt(m, 1, 0));
    ModelData back = ReadBack(WriteOOF(m));
    ASSERT_EQ(back.SubObjectCount(), 1);
    const SubObject& merged = back.Sub(0);
    EXPECT_EQ(merged.Name, "tri0");
    EXPECT_EQ(merged.VertexCount(), 6);
    EXPECT_EQ(merged.FaceCount(), 2);
    EXPECT_EQ(merged.Corners[3].VertexIndex, 3);  // second member's corners point past the first
    EXPECT_EQ(merged.Corners[5].VertexIndex, 5);
    EXPECT_EQ(merged.Vertices[4].Position, (Vector3{5, 0, 0}));  // moved into the head's frame
    ASSERT_EQ(merged.Pos.KeyCount(), 1);
    EXPECT_EQ(merged.Pos.Keys[0].Frame, 3);  // only the head's keys are written
}

TEST(OofWriter, PointsAndTurretsNameSaveSlots) {
    // Sub-object 0 is the child of 1, so slot 0 holds 1 and slot 1 holds 0.
    ModelData m;
    ASSERT_EQ(
        readOOF(
            m, OofBytes().header(2).sub(OofBytes::Triangle(0, 1)).sub(OofBytes::Triangle(1)).bytes),
        ResultCode::Success);
    m.GunPoints = {{0, {1, 2, 3}, {0, 0, 1}}};
    m.Batteries = {{{0}, {0, 1}}};
    ModelData back = ReadBack(WriteOOF(m));
    EXPECT_EQ(back.Sub(0).Name, "tri1");
    EXPECT_EQ(back.Sub(1).Parent, 0);
    EXPECT_EQ(back.GunPoints[0].Parent, 1);
    EXPECT_EQ(back.Batteries[0].Turrets, (std::vector<std::int32_t>{1, 0}));
}

TEST(OofWriter, SaveReplacesTheFileOnlyWhenWritingSucceeds) {
    namespace fs = std::filesystem;
    const fs::path dir = fs::temp_directory_path() / "mw_writer_test";
    fs::remove_all(dir);
    fs::create_directories(dir);
    const fs::path target = dir / "model.oof";
    { std::ofstream(target) << "old contents"; }
    ModelData m = MinimalModel();
    EXPECT_EQ(SaveOOF(m, target), "");
    EXPECT_EQ(fs::file_size(target), WriteOOF(m).size());
    EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 1);

    const fs::path missing = dir / "no such folder" / "model.oof";
    const std::string failure = SaveOOF(m, missing);
    EXPECT_NE(failure.find("model.oof"), std::string::npos);
    EXPECT_FALSE(fs::exists(missing));
    EXPECT_EQ(SaveOOF(m, ""), "");
    fs::remove_all(dir);
}

}  // namespace
}  // namespace mw
