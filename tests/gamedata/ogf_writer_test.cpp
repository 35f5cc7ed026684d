// Encoding texture images: what our reader gets back is every pixel cut to the format's bits,
// and the mip levels are box-filtered halves.
#include "gamedata/ogf_writer.h"

#include <gtest/gtest.h>

#include <random>

#include "gamedata/ogf.h"
#include "model/byte_cursor.h"

namespace mw {
namespace {

std::uint32_t Rgba(std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t a) {
    return r | g << 8 | b << 16 | a << 24;
}

// Random pixels with alpha drawn from `alphas`, and a few runs.
RgbaImage Noise(int w, int h, std::vector<std::uint32_t> alphas, std::uint32_t seed) {
    std::mt19937 rng(seed);
    RgbaImage image{w, h, {}};
    for (int i = 0; i < w * h; ++i) {
        const std::uint32_t a = alphas[rng() % alphas.size()];
        image.Pixels.push_back(i % 7 < 3 && i > 0 ? image.Pixels.back()
                                                  : Rgba(rng() & 255, rng() & 255, rng() & 255, a));
    }
    return image;
}

// The pixel as the format keeps it and our reader gives it back.
std::uint32_t Cut(std::uint32_t p, OgfFormat format) {
    const auto c = [p](int shift) { return (p >> shift) & 255u; };
    if (format == OgfFormat::F4444)
        return Rgba(c(0) >> 4 << 4, c(8) >> 4 << 4, c(16) >> 4 << 4, c(24) >> 4 << 4);
    return Rgba(c(0) >> 3 << 3, c(8) >> 3 << 3, c(16) >> 3 << 3, c(24) >= 128 ? 255 : 0);
}

// The 16-bit pixels of one level's records, read from where the reader stands.
std::vector<std::uint16_t> ReadLevel(ByteReader& r, std::size_t pixels) {
    std::vector<std::uint16_t> out;
    while (out.size() < pixels && r.ok()) {
        const std::uint8_t command = r.u8();
        const std::uint16_t pixel = r.u16();
        EXPECT_TRUE(command == 0 || (command >= 2 && command <= 250)) << int(command);
        out.insert(out.end(), command == 0 ? 1 : command, pixel);
    }
    return out;
}

TEST(OgfWriter, EncodingThenDecodingKeepsEveryPixelToTheFormatsBits) {
    struct Case {
        int w, h;
        std::vector<std::uint32_t> alphas;
        OgfFormat expected;
    };
    const Case cases[] = {
        {1, 1, {255}, OgfFormat::F1555},           {4, 4, {255, 0}, OgfFormat::F1555},
        {64, 64, {255, 128, 0}, OgfFormat::F4444}, {256, 256, {255}, OgfFormat::F1555},
        {64, 16, {40, 255}, OgfFormat::F4444},     {8, 128, {0, 255}, OgfFormat::F1555},
    };
    for (const Case& c : cases) {
        const RgbaImage image = Noise(c.w, c.h, c.alphas, static_cast<std::uint32_t>(c.w * c.h));
        EXPECT_EQ(ChooseFormat(image), c.expected);
        for (OgfFormat format : {OgfFormat::Auto, OgfFormat::F1555, OgfFormat::F4444}) {
            const OgfFormat used = format == OgfFormat::Auto ? c.expected : format;
            const auto bytes = EncodeOGF(image, {format, -1, "t.ogf"});
            ByteReader r(bytes);
            clsOGF ogf;
            ASSERT_EQ(ogf.ReadOGF(r), OgfStatus::Ok) << c.w << "x" << c.h;
            EXPECT_EQ(ogf.Image.Type, used == OgfFormat::F4444 ? kOgfType4444 : kOgfType1555);
            EXPECT_EQ(ogf.Image.Width, c.w);
            EXPECT_EQ(ogf.Image.Height, c.h);
            EXPECT_EQ(ogf.Image.Name, "t.ogf");
            EXPECT_EQ(ogf.Image.MipCount, GameMipLevels(c.w));
            ASSERT_EQ(ogf.Image.Pixels.size(), image.Pixels.size());
            for (std::size_t i = 0; i < image.Pixels.size(); ++i) {
                ASSERT_EQ(ogf.Image.Pixels[i], Cut(image.Pixels[i], used))
                    << c.w << "x" << c.h << " pixel " << i;
            }
        }
    }
}

TEST(OgfWriter, MipLevelsAreBoxFilteredHalvesDownToTheGamesCount) {
    const RgbaImage image = Noise(16, 8, {255, 100}, 7);
    const auto bytes = EncodeOGF(image, {OgfFormat::F4444, -1, "m"});
    ByteReader r(bytes);
    clsOGF ogf;
    ASSERT_EQ(ogf.ReadOGF(r), OgfStatus::Ok);
    ASSERT_EQ(ogf.Image.MipCount, 5);  // 16, 8, 4, 2, 1 wide
    RgbaImage level = image;
    for (int m = 1; m < 5; ++m) {
        // An independent box filter: the rounded mean of each 2 x 2 block.
        RgbaImage half{level.Width / 2, level.Height / 2, {}};
        for (int y = 0; y < half.Height; ++y) {
            for (int x = 0; x < half.Width; ++x) {
                std::uint32_t out = 0;
                for (int c = 0; c < 32; c += 8) {
                    std::uint32_t sum = 0;
                    for (int k = 0; k < 4; ++k) {
                        sum += level.Pixels[static_cast<std::size_t>((2 * y + k / 2) * level.Width +
                                                                     2 * x + k % 2)] >>
                                   c &
                               255u;
                    }
                    out |= (sum + 2) / 4 << c;
                }
                half.Pixels.push_back(out);
            }
        }
        level = half;
        const auto pixels = ReadLevel(r, level.Pixels.size());
        ASSERT_EQ(pixels.size(), level.Pixels.size()) << "level " << m;
        for (std::size_t i = 0; i < pixels.size(); ++i)
            EXPECT_EQ(pixels[i], To4444(level.Pixels[i])) << "level " << m << " pixel " << i;
    }
    // 16 x 8 halves to 1 x 0 at the last level: nothing is left to write.
    EXPECT_EQ(r.remaining(), 0u);
    EXPECT_LT(EncodeOGF(image, {OgfFormat::Auto, 1, "m"}).size(), bytes.size());
}

TEST(OgfWriter, RunsStopAt250AndAnAnimationReadsBackFrameByFrame) {
    RgbaImage flat{32, 32, std::vector<std::uint32_t>(32 * 32, Rgba(80, 160, 240, 255))};
    const auto bytes = EncodeOGF(flat, {OgfFormat::Auto, 1, "flat"});
    ByteReader header(bytes);
    clsOGF ogf;
    ASSERT_EQ(ogf.ReadOGF(header), OgfStatus::Ok);
    // 1,024 equal pixels: four runs of 250 and one of 24, the last five records.
    EXPECT_EQ(header.pos(), bytes.size());  // the reader stands after the last record
    for (std::size_t k = 5; k >= 2; --k)
        EXPECT_EQ(bytes[bytes.size() - 3 * k], 250);
    EXPECT_EQ(bytes[bytes.size() - 3], 24);
    EXPECT_EQ(bytes[bytes.size() - 16], 0x28);  // the descriptor ends the header

    std::vector<RgbaImage> frames;
    for (std::uint32_t f = 0; f < 3; ++f)
        frames.push_back(Noise(8, 8, {255}, 100 + f));
    const auto oaf = EncodeOAF(frames, {OgfFormat::Auto, -1, "anim.oaf"}, 0.25f);
    EXPECT_EQ(oaf[0], 127);
    EXPECT_EQ(oaf[2], 3);
    ByteReader r(oaf);
    TextureSlot slot;
    FrameStore store;
    ASSERT_EQ(ogf.ReadOAF(r, slot, store), OgfStatus::Ok);
    EXPECT_EQ(slot.FrameCount, 3);
    for (std::size_t f = 0; f < 3; ++f) {
        for (std::size_t i = 0; i < 64; ++i) {
            ASSERT_EQ(store.Pixels[slot.FrameBase + f * 64 + i],
                      Cut(frames[f].Pixels[i], OgfFormat::F1555))
                << "frame " << f;
        }
    }
}

TEST(OgfWriter, SizesAndNames) {
    EXPECT_TRUE(IsPowerOfTwo(1));
    EXPECT_TRUE(IsPowerOfTwo(256));
    EXPECT_FALSE(IsPowerOfTwo(0));
    EXPECT_FALSE(IsPowerOfTwo(96));
    EXPECT_EQ(GameMipLevels(64), 7);
    EXPECT_EQ(GameMipLevels(1), 1);
    // A name longer than the field is cut to it.
    const std::string longName(50, 'n');
    const auto bytes = EncodeOGF({2, 2, std::vector<std::uint32_t>(4, 0xFFFFFFFFu)},
                                 {OgfFormat::Auto, -1, longName});
    ByteReader r(bytes);
    clsOGF ogf;
    ASSERT_EQ(ogf.ReadOGF(r), OgfStatus::Ok);
    EXPECT_EQ(ogf.Image.Name, std::string(kOgfNameLength, 'n'));
}

}  // namespace
}  // namespace mw
