// Hostile and broken files: every one ends in a result code and the empty model, without
// reading or allocating past what the bytes hold.
#include <gtest/gtest.h>

#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "sample_model.h"
#include "support/alloc_tracker.h"
#include "support/oof_bytes.h"

namespace mw {
namespace {

using test::OofBytes;
using test::RawSub;

ResultCode Read(ModelData& m, const std::vector<std::uint8_t>& bytes) {
    return readOOF(m, bytes);
}

std::vector<std::uint8_t> SampleBytes() {
    ModelData sample = BuildSampleModel();
    return WriteOOF(sample);
}

TEST(OofReaderLimits, EveryTruncationIsRefusedWithTheEmptyModel) {
    const auto bytes = SampleBytes();
    ModelData m;
    // A cut between two chunks is a shorter valid file (or one without a model header, when
    // it comes before the first sub-object); any other cut is refused.
    int wholeFiles = 0;
    for (std::size_t n = 0; n + 1 < bytes.size(); ++n) {
        const std::vector<std::uint8_t> cut(bytes.begin(), bytes.begin() + n);
        const ResultCode r = Read(m, cut);
        if (r == ResultCode::Success) {
            ++wholeFiles;
            ASSERT_EQ(m.SubObjectCount(), 7) << n;
            continue;
        }
        ASSERT_TRUE(r == ResultCode::NotOOF || r == ResultCode::OOFReadError ||
                    r == ResultCode::NoOOFData)
            << n;
        ASSERT_TRUE(m.SubObjects.empty()) << n;
        ASSERT_EQ(m.SubObjectCount(), 0) << n;
    }
    // The ends of the last SOBJ and of the seven chunks after it, each cut right there or one
    // byte later (a single stray byte after a chunk is ignored).
    EXPECT_EQ(wholeFiles, 16);
    EXPECT_EQ(Read(m, bytes), ResultCode::Success);
}

// Sets the int32 at `offset` and reads the file again.
ResultCode ReadPatched(std::vector<std::uint8_t> bytes, std::size_t offset, std::int32_t v) {
    for (int i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<std::uint8_t>(v >> (8 * i));
    ModelData m;
    test::ResetLargestAllocation();
    const ResultCode r = readOOF(m, bytes);
    EXPECT_LE(test::LargestAllocation(), 16 * bytes.size() + 4096) << "offset " << offset;
    EXPECT_TRUE(m.SubObjects.empty() || r == ResultCode::Success);
    return r;
}

TEST(OofReaderLimits, HugeCountsAreRefusedBeforeAllocating) {
    RawSub s = OofBytes::Triangle(0);
    s.skipped = {0};
    const auto base = OofBytes().textures({"a"}).header(1).sub(s).bytes;
    // Offsets of the counts in this layout.
    const std::size_t txtrCount = 8 + 8;
    const std::size_t ohdrCount = txtrCount + 4 + 6 + 8;
    const std::size_t sobj = ohdrCount + 36 + 8;  // content start of SOBJ
    const std::size_t nameLen = sobj + 4 + 4 + 12 + 4 + 12 + 12 + 4 + 4 + 4 + 12;
    const std::size_t skipCount = nameLen + 4 + 5 + 4 + 1 + 8;
    const std::size_t vertexCount = skipCount + 8;
    const std::size_t faceCount = vertexCount + 4 + 3 * 28;
    const std::size_t cornerCount = faceCount + 4 + 12;
    // The offsets are right: writing the values they hold changes nothing.
    ASSERT_EQ(ReadPatched(base, vertexCount, 3), ResultCode::Success);
    ASSERT_EQ(ReadPatched(base, faceCount, 1), ResultCode::Success);
    ASSERT_EQ(ReadPatched(base, cornerCount, 3), ResultCode::Success);
    ASSERT_EQ(ReadPatched(base, nameLen, 5), ResultCode::Success);
    for (std::int32_t huge : {0x7FFFFFFF, 0x10000000, 100000, -1, -0x7FFFFFFF}) {
        EXPECT_NE(ReadPatched(base, txtrCount, huge), ResultCode::Success) << huge;
        EXPECT_NE(ReadPatched(base, nameLen, huge), ResultCode::Success) << huge;
        EXPECT_NE(ReadPatched(base, skipCount, huge), ResultCode::Success) << huge;
        EXPECT_NE(ReadPatched(base, vertexCount, huge), ResultCode::Success) << huge;
        EXPECT_NE(ReadPatched(base, faceCount, huge), ResultCode::Success) << huge;
        EXPECT_NE(ReadPatched(base, cornerCount, huge), ResultCode::Success) << huge;
        if (huge > 0) {
            EXPECT_EQ(ReadPatched(base, ohdrCount, huge), ResultCode::OOFReadError) << huge;
        }
    }
}

TEST(OofReaderLimits, HeaderMustComeBeforeSubObjectsAndKeys) {
    ModelData m;
    ByteWriter keys;
    for (int i = 0; i < 3; ++i)
        keys.i32(0);
    auto afterSub = OofBytes().header(1).sub(OofBytes::Triangle(0)).header(1);
    EXPECT_EQ(Read(m, afterSub.bytes), ResultCode::OOFReadError);
    for (const char* id : {"PANI", "RANI", "ANIM"}) {
        auto f = OofBytes().chunk(id, keys).header(1).sub(OofBytes::Triangle(0));
        EXPECT_EQ(Read(m, f.bytes), ResultCode::OOFReadError) << id;
    }
}

TEST(OofReaderLimits, KeyAndCornerLimits) {
    ModelData m;
    auto keyFile = [](std::int32_t count, std::size_t keySize) {
        ByteWriter w;
        w.i32(count);
        w.i32(0);
        w.i32(count);
        for (std::int32_t k = 0; k < count; ++k) {
            w.i32(k);
            for (std::size_t b = 4; b < keySize; b += 4)
                w.i32(0);
        }
        return OofBytes()
            .header(1)
            .sub(OofBytes::Triangle(0))
            .chunk(keySize == 16 ? "PANI" : "RANI", w);
    };
    EXPECT_EQ(Read(m, keyFile(1000, 16).bytes), ResultCode::Success);
    EXPECT_EQ(m.Sub(0).Pos.KeyCount(), 1000);
    EXPECT_EQ(Read(m, keyFile(1001, 16).bytes), ResultCode::OOFReadError);
    EXPECT_EQ(Read(m, keyFile(1000, 20).bytes), ResultCode::Success);
    EXPECT_EQ(Read(m, keyFile(1001, 20).bytes), ResultCode::OOFReadError);

    // One face may have up to 101 corners (100 per face, plus one); 102 is too many.
    RawSub s = OofBytes::Triangle(0);
    s.faces[0].corners.assign(101, FaceVertex{});
    EXPECT_EQ(Read(m, OofBytes().header(1).sub(s).bytes), ResultCode::Success);
    s.faces[0].corners.assign(102, FaceVertex{});
    EXPECT_EQ(Read(m, OofBytes().header(1).sub(s).bytes), ResultCode::OOFReadError);
}

TEST(OofReaderLimits, BrokenStructureIsRefused) {
    ModelData m;
    // A sub-object chunk missing.
    EXPECT_EQ(Read(m, OofBytes().header(2).sub(OofBytes::Triangle(1)).bytes),
              ResultCode::OOFReadError);
    // A loop in the hierarchy, a parent that does not exist, a sub-object its own parent.
    EXPECT_EQ(Read(m, OofBytes()
                          .header(3)
                          .sub(OofBytes::Triangle(0))
                          .sub(OofBytes::Triangle(1, 2))
                          .sub(OofBytes::Triangle(2, 1))
                          .bytes),
              ResultCode::OOFReadError);
    EXPECT_EQ(Read(m, OofBytes().header(1).sub(OofBytes::Triangle(0, 5)).bytes),
              ResultCode::OOFReadError);
    EXPECT_EQ(Read(m, OofBytes().header(1).sub(OofBytes::Triangle(0, 0)).bytes),
              ResultCode::OOFReadError);
    // A corner naming a vertex the sub-object does not have.
    RawSub s = OofBytes::Triangle(0);
    s.faces[0].corners[2].VertexIndex = 3;
    EXPECT_EQ(Read(m, OofBytes().header(1).sub(s).bytes), ResultCode::OOFReadError);
    // A skipped block with a negative length would move backwards.
    ByteWriter none;
    auto back = OofBytes().header(1).sub(OofBytes::Triangle(0)).chunk("IDTA", none, -8);
    back.sub(OofBytes::Triangle(0));
    EXPECT_EQ(Read(m, back.bytes), ResultCode::OOFReadError);
}

TEST(OofReaderLimits, SkippedBlockRunningPastTheEndEndsTheRead) {
    ModelData m;
    ByteWriter some;
    some.raw("abcd");
    auto f = OofBytes().header(1).sub(OofBytes::Triangle(0)).chunk("GRID", some, 1000);
    EXPECT_EQ(Read(m, f.bytes), ResultCode::Success);
}

}  // namespace
}  // namespace mw
