// Targa pictures as texture sources: both row orders, alpha kept, run-length packets, and
// files that are refused.
#include "gamedata/targa.h"

#include <gtest/gtest.h>

#include "model/byte_cursor.h"

namespace mw {
namespace {

// A 2 x 2 Targa: `type` 2 or 10, `depth` 24 or 32, rows from the top or the bottom.
std::vector<std::uint8_t> Targa(std::uint8_t type, std::uint8_t depth, bool topDown) {
    ByteWriter w;
    w.u8(0);
    w.u8(0);
    w.u8(type);
    for (int i = 0; i < 9; ++i)
        w.u8(0);
    w.u16(2);
    w.u16(2);
    w.u8(depth);
    w.u8(topDown ? 0x28 : 0x08);
    // File order: a red pixel and a green one, then two equal blue ones (a run for type 10).
    const auto pixel = [&](std::uint8_t b, std::uint8_t g, std::uint8_t r, std::uint8_t a) {
        w.u8(b);
        w.u8(g);
        w.u8(r);
        if (depth == 32) w.u8(a);
    };
    if (type == 10) w.u8(1);  // two raw pixels
    pixel(0, 0, 255, 10);
    pixel(0, 255, 0, 20);
    if (type == 10) {
        w.u8(0x81);  // one pixel twice
        pixel(255, 0, 0, 30);
    } else {
        pixel(255, 0, 0, 30);
        pixel(255, 0, 0, 30);
    }
    return w.release();
}

constexpr std::uint32_t kRed = 0x000000FFu, kGreen = 0x0000FF00u, kBlue = 0x00FF0000u;

TEST(Targa, RowOrdersAlphaAndRuns) {
    for (std::uint8_t type : {2, 10}) {
        for (std::uint8_t depth : {24, 32}) {
            for (bool topDown : {true, false}) {
                const auto image = ReadTarga(Targa(type, depth, topDown));
                ASSERT_TRUE(image.has_value()) << int(type) << " " << int(depth);
                ASSERT_EQ(image->Pixels.size(), 4u);
                const std::uint32_t a1 = depth == 32 ? 10u << 24 : 0xFF000000u;
                const std::uint32_t a3 = depth == 32 ? 30u << 24 : 0xFF000000u;
                // The file's first row is the picture's top row only when stored top down.
                const std::size_t first = topDown ? 0 : 2, second = topDown ? 2 : 0;
                EXPECT_EQ(image->Pixels[first], kRed | a1);
                EXPECT_EQ(image->Pixels[first + 1] & 0xFFFFFFu, kGreen);
                EXPECT_EQ(image->Pixels[second], kBlue | a3);
                EXPECT_EQ(image->Pixels[second + 1], kBlue | a3);
            }
        }
    }
}

TEST(Targa, RefusesWhatItCannotRead) {
    auto colourMapped = Targa(2, 24, true);
    colourMapped[1] = 1;
    EXPECT_FALSE(ReadTarga(colourMapped).has_value());
    auto grey = Targa(2, 24, true);
    grey[2] = 3;
    EXPECT_FALSE(ReadTarga(grey).has_value());
    auto cut = Targa(2, 32, true);
    cut.resize(cut.size() - 3);
    EXPECT_FALSE(ReadTarga(cut).has_value());
    // A huge size with a few bytes is refused before anything is allocated for it.
    auto huge = Targa(10, 32, true);
    huge[12] = huge[13] = huge[14] = huge[15] = 0xFF;
    EXPECT_FALSE(ReadTarga(huge).has_value());
}

}  // namespace
}  // namespace mw
