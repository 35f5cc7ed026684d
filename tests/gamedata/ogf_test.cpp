#include "gamedata/ogf.h"

#include <gtest/gtest.h>

#include "gamedata_writers.h"
#include "model/file_io.h"
#include "support/alloc_tracker.h"

namespace mw {
namespace {

std::uint32_t Rgba(std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t a) {
    return r | g << 8 | b << 16 | a << 24;
}

// A 5 x 3 image with distinct rows and a run, so that row order and runs both show.
RgbaImage TestImage() {
    RgbaImage img{5, 3, {}};
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 5; ++x) {
            img.Pixels.push_back(x < 3 ? Rgba(40 * y + 8, 16 * x, 200, 255)
                                       : Rgba(0, 0, 0, y == 2 ? 0 : 255));
        }
    }
    return img;
}

OgfStatus Decode(clsOGF& ogf, const Bytes& bytes) {
    ByteReader r(bytes);
    return ogf.ReadOGF(r);
}

TEST(Ogf, TrueColourTypesRoundTripInEitherRowOrder) {
    const RgbaImage img = TestImage();
    for (std::uint8_t type : {2, 10}) {
        for (bool topDown : {true, false}) {
            for (std::uint8_t depth : {32, 24}) {
                clsOGF ogf;
                ASSERT_EQ(Decode(ogf, WriteOGF(img, {type, depth, topDown, 1, "t", 3})),
                          OgfStatus::Ok);
                std::vector<std::uint32_t> want = img.Pixels;
                if (depth == 24) {
                    for (auto& p : want)
                        p |= 0xFF000000u;  // opaque
                }
                EXPECT_EQ(ogf.Image.Pixels, want) << int(type) << topDown << int(depth);
                EXPECT_FALSE(ogf.Image.HasAlpha);
                EXPECT_EQ(ogf.Image.Name, "");  // the game's plain Targa header has none
                EXPECT_TRUE(ogf.Image.GameReadsHeader);
                EXPECT_EQ(ogf.Image.Width, 5);
                EXPECT_EQ(ogf.Image.Height, 3);

                // The older layout with a name field and mip count still reads, marked.
                OgfOptions named{type, depth, topDown, 1, "t", 3};
                named.NamedTrueColour = true;
                ASSERT_EQ(Decode(ogf, WriteOGF(img, named)), OgfStatus::Ok);
                EXPECT_EQ(ogf.Image.Pixels, want);
                EXPECT_EQ(ogf.Image.Name, "t");
                EXPECT_FALSE(ogf.Image.GameReadsHeader);
            }
        }
    }
}

TEST(Ogf, BottomUpImageStoresItsFirstFileRowLast) {
    // Written by hand: a 1 x 2 true-colour image whose descriptor has bit 5 clear; the
    // first row in the file is red, the second blue.
    ByteWriter w;
    w.u8(0);
    w.u8(0);
    w.u8(2);
    w.raw(std::string(35, '\0'));
    w.u8(1);
    w.raw(std::string(9, '\0'));
    w.u16(1);
    w.u16(2);
    w.u8(24);
    w.u8(0x08);
    for (std::uint8_t v : {0, 0, 255, 255, 0, 0})
        w.u8(v);  // b, g, r per pixel
    clsOGF ogf;
    ASSERT_EQ(Decode(ogf, w.bytes()), OgfStatus::Ok);
    EXPECT_EQ(ogf.Image.Pixels[1], Rgba(255, 0, 0, 255));
    EXPECT_EQ(ogf.Image.Pixels[0], Rgba(0, 0, 255, 255));
}

TEST(Ogf, SixteenBitFormatsExpandByShifting) {
    RgbaImage img{2, 1, {Rgba(255, 255, 255, 255), Rgba(16, 32, 48, 255)}};
    clsOGF ogf;
    ASSERT_EQ(Decode(ogf, WriteOGF(img, {121, 32, true, 1, "a", 0})), OgfStatus::Ok);
    EXPECT_EQ(ogf.Image.Pixels[0], Rgba(240, 240, 240, 240));
    EXPECT_EQ(ogf.Image.Pixels[1], Rgba(16, 32, 48, 240));
    EXPECT_FALSE(ogf.Image.HasAlpha);

    img.Pixels[1] = Rgba(255, 255, 255, 0);
    for (std::uint8_t type : {122, 123, 124, 127}) {
        ASSERT_EQ(Decode(ogf, WriteOGF(img, {type, 32, true, 1, "b", 0})), OgfStatus::Ok);
        EXPECT_EQ(ogf.Image.Pixels[0], Rgba(248, 248, 248, 255));
        EXPECT_EQ(ogf.Image.Pixels[1], Rgba(248, 248, 248, 0));  // the pixel 0x7FFF
        EXPECT_TRUE(ogf.Image.HasAlpha);
    }
}

Bytes SixteenBitStream(std::initializer_list<std::uint8_t> records, int w, int h) {
    Bytes b = WriteOGF(RgbaImage{1, 1, {0}}, {122, 32, true, 1, "r", 0});
    b.resize(b.size() - 3);
    b[b.size() - 6] = static_cast<std::uint8_t>(w);  // width and height
    b[b.size() - 5] = 0;
    b[b.size() - 4] = static_cast<std::uint8_t>(h);
    b.insert(b.end(), records);
    return b;
}

TEST(Ogf, SixteenBitRunCommands) {
    clsOGF ogf;
    ASSERT_EQ(Decode(ogf, SixteenBitStream({250, 0xFF, 0xFF, 0, 0x00, 0x80}, 251, 1)),
              OgfStatus::Ok);
    EXPECT_EQ(ogf.Image.Pixels[249], Rgba(248, 248, 248, 255));
    EXPECT_EQ(ogf.Image.Pixels[250], Rgba(0, 0, 0, 255));
    EXPECT_EQ(Decode(ogf, SixteenBitStream({251, 0, 0}, 4, 1)), OgfStatus::BadCommand);
    EXPECT_EQ(Decode(ogf, SixteenBitStream({1, 0, 0}, 1, 1)), OgfStatus::BadCommand);
    // A run past the last pixel, and a stream that ends early.
    EXPECT_EQ(Decode(ogf, SixteenBitStream({5, 0, 0}, 4, 1)), OgfStatus::Damaged);
    EXPECT_EQ(Decode(ogf, SixteenBitStream({2, 0, 0}, 4, 1)), OgfStatus::Damaged);
}

TEST(Ogf, HeaderRefusals) {
    const Bytes good = WriteOGF(TestImage(), {2, 32, true, 1, "h", 0});
    clsOGF ogf;
    Bytes b = good;
    b[1] = 1;  // colour map
    EXPECT_EQ(Decode(ogf, b), OgfStatus::BadType);
    b = good;
    b[2] = 3;
    EXPECT_EQ(Decode(ogf, b), OgfStatus::BadType);
    b = good;
    b[3 + 9 + 4] = 16;  // depth
    EXPECT_EQ(Decode(ogf, b), OgfStatus::BadDepth);
    b = good;
    b[3 + 9 + 5] = 0x23;  // descriptor
    EXPECT_EQ(Decode(ogf, b), OgfStatus::BadDescriptor);

    // A 16-bit image name with no NUL in its 35 bytes.
    Bytes noNul = WriteOGF(TestImage(), {122, 32, true, 1, std::string(34, 'n'), 0});
    noNul[3 + 34] = 'n';
    EXPECT_EQ(Decode(ogf, noNul), OgfStatus::Damaged);
}

TEST(Ogf, EveryTruncationFailsWithoutWritingPastTheImage) {
    for (std::uint8_t type : {2, 10, 121, 122}) {
        const Bytes whole = WriteOGF(TestImage(), {type, 32, false, 1, "cut", 2});
        for (std::size_t n = 0; n < whole.size(); ++n) {
            const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n));
            clsOGF ogf;
            EXPECT_NE(Decode(ogf, cut), OgfStatus::Ok) << int(type) << " " << n;
        }
    }
}

TEST(Ogf, HugeSizesAreRefusedBeforeAllocating) {
    for (std::uint8_t type : {2, 10, 122}) {
        Bytes b = WriteOGF(RgbaImage{1, 1, {0}}, {type, 32, true, 1, "big", 0});
        const std::size_t size = type >= 121 ? 3 + 4 + 1 + 9 : 3 + 9;
        b[size] = b[size + 2] = 0xFF;  // 32767 x 32767
        b[size + 1] = b[size + 3] = 0x7F;
        clsOGF ogf;
        test::ResetLargestAllocation();
        EXPECT_EQ(Decode(ogf, b), OgfStatus::Damaged);
        EXPECT_LT(test::LargestAllocation(), 4096u);
    }
}

TEST(Oaf, FramesClaimingHugeSizesAllocateNothingBig) {
    std::vector<RgbaImage> frames(3, RgbaImage{1, 1, {0}});
    Bytes oaf = WriteOAF(frames, {122, 32, true, 1, "a", 0});
    const std::size_t size = 7 + 3 + 2 + 1 + 9;  // header, then frame 0 up to its width
    oaf[size] = oaf[size + 2] = 0xFF;
    oaf[size + 1] = oaf[size + 3] = 0x7F;
    clsOGF ogf;
    TextureSlot slot;
    FrameStore store;
    ByteReader r(oaf);
    test::ResetLargestAllocation();
    EXPECT_EQ(ogf.ReadOAF(r, slot, store), OgfStatus::Damaged);
    EXPECT_LT(test::LargestAllocation(), 4096u);
    EXPECT_TRUE(store.Pixels.empty());
}

TEST(Ogf, ReaderStopsBeforeTheMipLevels) {
    const RgbaImage img = TestImage();
    const Bytes one = WriteOGF(img, {122, 32, true, 1, "m", 0});
    const Bytes mips = WriteOGF(img, {122, 32, true, 3, "m", 0});
    clsOGF ogf;
    ByteReader r(mips);
    ASSERT_EQ(ogf.ReadOGF(r), OgfStatus::Ok);
    EXPECT_EQ(r.pos(), one.size());
    EXPECT_EQ(ogf.Image.MipCount, 3);
}

TEST(Oaf, FramesGoToTheSharedStore) {
    std::vector<RgbaImage> frames;
    for (std::uint32_t f = 0; f < 5; ++f)
        frames.push_back({2, 2, std::vector<std::uint32_t>(4, Rgba(16 * f, 0, 0, 255))});
    for (bool newer : {true, false}) {
        for (int mips : {1, 3}) {
            const Bytes oaf = WriteOAF(frames, {122, 32, true, mips, "anim", 0}, newer);
            EXPECT_EQ(oaf[0], newer ? 127 : 5);
            clsOGF ogf;
            FrameStore store;
            store.Pixels.assign(7, 0);  // another texture's frames come first
            TextureSlot slot;
            slot.Gam.Block[16] = 0;  // AnimationTime 2.0 at bytes 16..19
            slot.Gam.Block[19] = 0x40;
            ByteReader r(oaf);
            ASSERT_EQ(ogf.ReadOAF(r, slot, store), OgfStatus::Ok) << newer << mips;
            EXPECT_EQ(slot.FrameCount, 5);
            EXPECT_EQ(slot.FrameBase, 7u);
            EXPECT_EQ(slot.CurrentFrame, 1);
            EXPECT_FLOAT_EQ(slot.FrameTime, 0.4f);
            EXPECT_EQ(slot.PixelCount, 4);
            ASSERT_EQ(store.Pixels.size(), 7u + 20u);
            EXPECT_EQ(store.Pixels[7 + 4 * 3], Rgba(48, 0, 0, 255));
            EXPECT_EQ(store.AnimatedCount, 1);
            EXPECT_EQ(ogf.Image.Pixels[0], Rgba(64, 0, 0, 255));  // the last frame
        }
    }
}

TEST(Oaf, ADamagedFrameKeepsTheFramesBeforeIt) {
    std::vector<RgbaImage> frames(3, RgbaImage{2, 2, std::vector<std::uint32_t>(4, 0xFF0000FFu)});
    Bytes oaf = WriteOAF(frames, {122, 32, true, 1, "anim", 0});
    oaf.resize(oaf.size() - 2);
    clsOGF ogf;
    FrameStore store;
    TextureSlot slot;
    ByteReader r(oaf);
    EXPECT_EQ(ogf.ReadOAF(r, slot, store), OgfStatus::Damaged);
    EXPECT_EQ(slot.FrameCount, 2);
    EXPECT_EQ(store.Pixels.size(), 8u);
}

// Images from the game's demo data, when they are at hand.
TEST(OgfRealData, DemoTexturesDecode) {
    const std::filesystem::path dir = MW_SOURCE_DIR "/../shared/testdata/images";
    if (!std::filesystem::exists(dir)) GTEST_SKIP() << "no demo data at " << dir;
    struct Expect {
        const char* file;
        int width, height, frames;
    };
    for (const Expect& e :
         {Expect{"BlastRingBlue.ogf", 64, 64, 1}, Expect{"Taunt.ogf", 64, 64, 1},
          Expect{"SmallButtonFramed.ogf", 76, 20, 1}, Expect{"d3_btn_up.ogf", 32, 32, 1},
          Expect{"ExplosionBlkShrk.oaf", 64, 64, 14}, Expect{"TestNapalm.oaf", 64, 64, 16}}) {
        const auto bytes = ReadFileBytes(dir / e.file);
        ASSERT_TRUE(bytes) << e.file;
        clsOGF ogf;
        ByteReader r(*bytes);
        TextureSlot slot;
        FrameStore store;
        const bool animation = std::string(e.file).ends_with(".oaf");
        ASSERT_EQ(animation ? ogf.ReadOAF(r, slot, store) : ogf.ReadOGF(r), OgfStatus::Ok)
            << e.file;
        EXPECT_EQ(ogf.Image.Width, e.width) << e.file;
        EXPECT_EQ(ogf.Image.Height, e.height) << e.file;
        if (animation) {
            EXPECT_EQ(slot.FrameCount, e.frames) << e.file;
        }
    }
    // The orange ring is mostly red, the blue one mostly blue.
    auto redMinusBlue = [&](const char* file) {
        clsOGF ogf;
        const auto bytes = ReadFileBytes(dir / file);
        ByteReader r(*bytes);
        EXPECT_EQ(ogf.ReadOGF(r), OgfStatus::Ok);
        long sum = 0;
        for (auto p : ogf.Image.Pixels)
            sum += static_cast<long>(p & 255) - ((p >> 16) & 255);
        return sum;
    };
    EXPECT_GT(redMinusBlue("BlastRingOrange.ogf"), 0);
    EXPECT_LT(redMinusBlue("BlastRingBlue.ogf"), 0);
}

}  // namespace
}  // namespace mw
