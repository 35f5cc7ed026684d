#include "model/oof_reader.h"

#include <gtest/gtest.h>

#include "support/oof_bytes.h"

namespace mw {
namespace {

using test::OofBytes;
using test::RawFace;
using test::RawSub;

ResultCode Read(ModelData& m, const OofBytes& f) {
    return readOOF(m, f.bytes);
}

TEST(OofReader, TranslatesEveryResultCode) {
    const char* texts[] = {"Success",
                           "Not a valid OOF file",
                           "OOF Version too low",
                           "No OOF model data to import",
                           "Error reading OOF file",
                           "No ORF model data to import",
                           "Roomfile version to low",
                           "Error reading ORF file"};
    for (int code = 0; code < 8; ++code)
        EXPECT_STREQ(TranslateError(code), texts[code]);
    EXPECT_STREQ(TranslateError(8), "");
    EXPECT_STREQ(TranslateError(-1), "");
}

TEST(OofReader, ReadsASubObjectWithItsDerivedValues) {
    RawSub s = OofBytes::Triangle(0);
    s.name = "body";
    s.properties = "  $Rotate = 5  ";
    s.positions = {{-1, 2, 3}, {4, -5, 6}, {0, 0, -7}};
    s.normals = {{0, 0, 0}, {0, 2, 0}, {1, 0, 0}};
    s.alphas = {1.0f, 0.98f, 1.0f};
    s.skipped = {1, 2, 3};
    s.faces[0].texture = 0;
    ModelData m;
    ASSERT_EQ(Read(m, OofBytes().textures({"Hull"}).header(1).sub(s)), ResultCode::Success);

    const SubObject& sub = m.Sub(0);
    EXPECT_EQ(sub.Name, "body");
    EXPECT_EQ(sub.Properties, "$rotate = 5");
    EXPECT_EQ(sub.PropertyFlags, kPropRotate);
    EXPECT_EQ(sub.RotateSpeed, 5.0f);
    EXPECT_EQ(sub.BoxMin, (Vector3{-1, -5, -7}));
    EXPECT_EQ(sub.BoxMax, (Vector3{4, 2, 6}));
    // Stored normals are kept as they are, of any length.
    EXPECT_EQ(sub.Vertices[0].Normal, (Vector3{0, 0, 0}));
    EXPECT_EQ(sub.Vertices[1].Normal, (Vector3{0, 2, 0}));
    EXPECT_TRUE(sub.HasAlpha);
    ASSERT_EQ(sub.FaceCount(), 1);
    EXPECT_EQ(sub.Faces[0].Primitive, kPrimTriangles);
    EXPECT_EQ(sub.Faces[0].TextureIndex, 0);
    EXPECT_EQ(sub.Faces[0].Color, (std::array<std::uint8_t, 4>{255, 255, 255, 255}));
    EXPECT_EQ(sub.Faces[0].FaceKeptA, 0xAABBCCDDu);
    EXPECT_EQ(sub.CornerCount(), 3);
    EXPECT_EQ(m.Version, 2300);
    EXPECT_EQ(m.FrameMin, 0);
    EXPECT_EQ(m.FrameMax, 1);
}

TEST(OofReader, PrimitiveFollowsCornerCountAndColoursKeepOpaqueAlpha) {
    RawSub s = OofBytes::Triangle(0);
    s.positions.push_back({1, 1, 0});
    s.positions.push_back({2, 1, 0});
    RawFace quad, pentagon;
    quad.corners = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}};
    pentagon.corners = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}};
    s.faces.push_back(quad);
    s.faces.push_back(pentagon);
    ModelData m;
    ASSERT_EQ(Read(m, OofBytes().header(1).sub(s)), ResultCode::Success);
    const auto& faces = m.Sub(0).Faces;
    EXPECT_EQ(faces[0].Primitive, kPrimTriangles);
    EXPECT_EQ(faces[1].Primitive, kPrimQuads);
    EXPECT_EQ(faces[2].Primitive, kPrimPolygon);
    EXPECT_EQ(faces[0].TextureIndex, -1);
    EXPECT_EQ(faces[0].Color, (std::array<std::uint8_t, 4>{10, 20, 30, 255}));
    EXPECT_EQ(m.Sub(0).CornerCount(), 12);
}

TEST(OofReader, AlphaBlockOnlyFromVersion2300) {
    RawSub s = OofBytes::Triangle(0);
    s.alphas = {0.5f, 0.5f, 0.5f};  // not written at 2299
    ModelData m;
    ASSERT_EQ(Read(m, OofBytes(2299).header(1).sub(s)), ResultCode::Success);
    for (const Vertex& v : m.Sub(0).Vertices)
        EXPECT_EQ(v.Alpha, 1.0f);
    EXPECT_FALSE(m.Sub(0).HasAlpha);

    s.alphas = {0.99f, 1.0f, 0.995f};
    ASSERT_EQ(Read(m, OofBytes(2300).header(1).sub(s)), ResultCode::Success);
    EXPECT_FALSE(m.Sub(0).HasAlpha);
}

TEST(OofReader, TextureNamesLoseTheirTerminatorAndAreRenamed) {
    ModelData m;
    const auto f = OofBytes()
                       .textures({"FireBall01", "Tech Pan Neons A", "MyHull", "NGRFlarePuff01"})
                       .header(1)
                       .sub(OofBytes::Triangle(0));
    ASSERT_EQ(Read(m, f), ResultCode::Success);
    ASSERT_EQ(m.Textures.size(), 4u);
    EXPECT_EQ(m.Textures[0].Name, "explosion");
    EXPECT_EQ(m.Textures[1].Name, "techpan");
    EXPECT_EQ(m.Textures[2].Name, "myhull");
    EXPECT_EQ(m.Textures[3].Name, "ngrflarepuff");
    EXPECT_EQ(m.Textures[2].LoadedName, "myhull");
    EXPECT_TRUE(m.Textures[2].GameName.empty());
}

TEST(OofReader, SaveOrderIsPreOrderWithSiblingsAscending) {
    ModelData m;
    const auto f = OofBytes()
                       .header(4)
                       .sub(OofBytes::Triangle(3, 1))
                       .sub(OofBytes::Triangle(2, 0))
                       .sub(OofBytes::Triangle(1, 0))
                       .sub(OofBytes::Triangle(0, -1));
    ASSERT_EQ(Read(m, f), ResultCode::Success);
    ASSERT_EQ(m.SubObjectCount(), 4);
    EXPECT_EQ(m.Head(0), 0);
    EXPECT_EQ(m.Head(1), 1);
    EXPECT_EQ(m.Head(2), 3);
    EXPECT_EQ(m.Head(3), 2);

    // Several roots come in ascending order, each with its subtree.
    const auto g = OofBytes()
                       .header(3)
                       .sub(OofBytes::Triangle(0, 2))
                       .sub(OofBytes::Triangle(1))
                       .sub(OofBytes::Triangle(2));
    ASSERT_EQ(Read(m, g), ResultCode::Success);
    EXPECT_EQ(m.Head(0), 1);
    EXPECT_EQ(m.Head(1), 2);
    EXPECT_EQ(m.Head(2), 0);
}

ByteWriter KeyBlock(const std::vector<std::array<std::int32_t, 3>>& ranges, std::size_t keySize) {
    ByteWriter w;
    for (const auto& r : ranges) {
        w.i32(r[0]);
        w.i32(r[1]);
        w.i32(r[2]);
        for (int k = 0; k < r[0]; ++k) {
            w.i32(r[1] + k);
            if (keySize == 16) {
                w.vec3({1, 2, 3});
            } else {
                w.vec3({0, 2, 0});
                w.i32(16384);
            }
        }
    }
    return w;
}

TEST(OofReader, KeysSetFlagsFrameRangeAndMatrices) {
    ModelData m;
    auto f = OofBytes().header(2).sub(OofBytes::Triangle(0)).sub(OofBytes::Triangle(1, 0));
    f.chunk("PANI", KeyBlock({{2, -3, 8}, {0, 0, 0}}, 16));
    f.chunk("ANIM", KeyBlock({{0, 0, 0}, {2, 1, 12}}, 20));
    ASSERT_EQ(Read(m, f), ResultCode::Success);
    EXPECT_TRUE(m.HasPANI);
    EXPECT_TRUE(m.HasRANI);
    EXPECT_EQ(m.FrameMin, -3);
    EXPECT_EQ(m.FrameMax, 12);
    ASSERT_EQ(m.Sub(1).Rot.KeyCount(), 2);
    EXPECT_EQ(m.Sub(1).Rot.Keys[0].Axis, (Vector3{0, 1, 0}));  // normalised
    EXPECT_EQ(m.Sub(1).Rot.Keys[0].Matrix, IdentityMatrix());
    // A quarter turn about Y (negated to -Y for the left-handed model).
    EXPECT_NEAR(m.Sub(1).Rot.Keys[1].Matrix[2], 1.0f, 1e-6);
    EXPECT_NEAR(m.Sub(1).Rot.Keys[1].Matrix[8], -1.0f, 1e-6);
}

TEST(OofReader, FrameRangeFallsBackToZeroOne) {
    ModelData m;
    auto f = OofBytes().header(1).sub(OofBytes::Triangle(0));
    f.chunk("RANI", KeyBlock({{0, 5, 3}}, 20));
    ASSERT_EQ(Read(m, f), ResultCode::Success);
    EXPECT_EQ(m.FrameMin, 0);
    EXPECT_EQ(m.FrameMax, 1);
    EXPECT_TRUE(m.HasRANI);
}

TEST(OofReader, PointsBatteriesAndSpecialPoint) {
    ByteWriter gp;
    gp.i32(2);
    for (int i = 0; i < 2; ++i) {
        gp.i32(0);
        gp.vec3({static_cast<float>(i), 0, 0});
        gp.vec3({0, 0, 5});  // kept as stored, not normalised
    }
    ByteWriter wb;
    wb.i32(1);
    wb.i32(10);  // ten gun points: the first eight are kept
    for (int i = 0; i < 10; ++i)
        wb.i32(i);
    wb.i32(1);
    wb.i32(0);
    ByteWriter sp;
    sp.i32(1);
    test::WriteText(sp, "$Special");
    test::WriteText(sp, "props");
    sp.vec3({1, 2, 3});
    sp.f32(4.0f);
    ModelData m;
    auto f = OofBytes().header(1).sub(OofBytes::Triangle(0));
    f.chunk("GPNT", gp).chunk("WBAT", wb).chunk("SPCL", sp);
    ASSERT_EQ(Read(m, f), ResultCode::Success);
    ASSERT_EQ(m.GunPoints.size(), 2u);
    EXPECT_EQ(m.GunPoints[1].Position, (Vector3{1, 0, 0}));
    EXPECT_EQ(m.GunPoints[1].Normal, (Vector3{0, 0, 5}));
    ASSERT_EQ(m.Batteries.size(), 1u);
    EXPECT_EQ(m.Batteries[0].GunPoints, (std::vector<std::int32_t>{0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(m.Batteries[0].Turrets, (std::vector<std::int32_t>{0}));
    ASSERT_TRUE(m.Special.has_value());
    EXPECT_EQ(m.Special->Name, "$Special");
    EXPECT_EQ(m.Special->Properties, "props");
    EXPECT_EQ(m.Special->Radius, 4.0f);
}

TEST(OofReader, PointListsAreCutToTheirLimits) {
    // Twelve attach points announced, ten stored: the next chunk header is read from the
    // eleventh record, which here is laid out as an IDTA chunk that skips the rest.
    ByteWriter at;
    at.i32(12);
    for (int i = 0; i < 10; ++i) {
        at.i32(0);
        at.vec3({static_cast<float>(i), 0, 0});
        at.vec3({});
    }
    at.raw("IDTA");
    at.i32(48);
    at.raw(std::string(48, 'x'));
    ModelData m;
    auto f = OofBytes().chunk("ATCH", at).header(1).sub(OofBytes::Triangle(0));
    ASSERT_EQ(Read(m, f), ResultCode::Success);
    EXPECT_EQ(m.AttachPoints.size(), 10u);
    EXPECT_EQ(m.AttachPoints[9].Position.X, 9.0f);
}

TEST(OofReader, SkipsIdtaGridAndIgnoresOneTrailingByte) {
    ByteWriter skipped;
    skipped.raw("anything at all");
    ModelData m;
    auto f = OofBytes().chunk("IDTA", skipped).header(1).chunk("GRID", skipped);
    f.sub(OofBytes::Triangle(0)).raw(0x55);
    ASSERT_EQ(Read(m, f), ResultCode::Success);
    EXPECT_EQ(m.SubObjectCount(), 1);

    // Two bytes after the last chunk are read as the start of another header: an error.
    f.raw(0x55);
    EXPECT_EQ(Read(m, f), ResultCode::OOFReadError);
}

TEST(OofReader, PinfTextIsKept) {
    ByteWriter pinf;
    pinf.raw("made by hand\n");
    ModelData m;
    auto f = OofBytes().header(1).sub(OofBytes::Triangle(0)).chunk("PINF", pinf);
    ASSERT_EQ(Read(m, f), ResultCode::Success);
    EXPECT_EQ(m.PinfText, "made by hand\n");
}

TEST(OofReader, RefusesWithTheRightCode) {
    ModelData m;
    EXPECT_EQ(Read(m, OofBytes(2300, "PSPX").header(1)), ResultCode::NotOOF);
    EXPECT_EQ(readOOF(m, std::vector<std::uint8_t>{}), ResultCode::NotOOF);
    EXPECT_EQ(Read(m, OofBytes(2199).header(1)), ResultCode::OOFVersionTooLow);
    EXPECT_EQ(Read(m, OofBytes().header(0)), ResultCode::NoOOFData);
    EXPECT_EQ(Read(m, OofBytes().header(1).sub(OofBytes::Triangle(1))), ResultCode::OOFReadError);
    EXPECT_EQ(Read(m, OofBytes().header(1).sub(OofBytes::Triangle(-1))), ResultCode::OOFReadError);
    ByteWriter junk;
    junk.i32(0);
    EXPECT_EQ(Read(m, OofBytes().header(1).sub(OofBytes::Triangle(0)).chunk("JUNK", junk)),
              ResultCode::OOFReadError);
    // No model header at all.
    ByteWriter pinf;
    pinf.raw("x");
    EXPECT_EQ(Read(m, OofBytes().chunk("PINF", pinf)), ResultCode::NoOOFData);
}

TEST(OofReader, FailedReadLeavesTheEmptyModelButEarlyRefusalsKeepThePreviousOne) {
    ModelData m;
    ASSERT_EQ(Read(m, OofBytes().header(1).sub(OofBytes::Triangle(0))), ResultCode::Success);
    EXPECT_EQ(Read(m, OofBytes(2000).header(1)), ResultCode::OOFVersionTooLow);
    EXPECT_EQ(m.SubObjectCount(), 1);
    EXPECT_EQ(Read(m, OofBytes().header(2).sub(OofBytes::Triangle(0))), ResultCode::OOFReadError);
    EXPECT_EQ(m.SubObjectCount(), 0);
    EXPECT_TRUE(m.SubObjects.empty());
    EXPECT_EQ(m.FrameMin, 0);
    EXPECT_EQ(m.FrameMax, 1);
}

}  // namespace
}  // namespace mw
