#include "view/background.h"

#include <gtest/gtest.h>

#include "model/byte_cursor.h"

namespace mw {
namespace {

// A 2 x 2 Targa: top left red, top right green, bottom left blue, bottom right white, laid
// out in the file by the descriptor's orientation bits.
std::vector<std::uint8_t> Targa(std::uint8_t descriptor, std::uint8_t depth = 24,
                                std::uint8_t type = 2) {
    ByteWriter w;
    w.u8(0);
    w.u8(0);
    w.u8(type);
    for (int i = 0; i < 9; ++i)
        w.u8(0);
    w.u16(2);
    w.u16(2);
    w.u8(depth);
    w.u8(descriptor);
    const std::uint8_t picture[2][2][3] = {{{255, 0, 0}, {0, 255, 0}},
                                           {{0, 0, 255}, {255, 255, 255}}};
    const bool topDown = descriptor & 0x20, rightToLeft = descriptor & 0x10;
    for (int row = 0; row < 2; ++row) {
        const int y = topDown ? row : 1 - row;  // picture rows from the top
        for (int col = 0; col < 2; ++col) {
            const int x = rightToLeft ? 1 - col : col;
            const auto* p = picture[y][x];
            if (depth == 16) {
                w.u16(static_cast<std::uint16_t>((p[0] >> 3) << 10 | (p[1] >> 3) << 5 | p[2] >> 3));
            } else {
                w.u8(p[2]);
                w.u8(p[1]);
                w.u8(p[0]);
                if (depth == 32) w.u8(255);
            }
        }
    }
    return w.release();
}

TEST(Background, EveryTargaOrientationComesOutUpright) {
    for (std::uint8_t descriptor : {0x00, 0x08, 0x10, 0x20, 0x30}) {
        for (std::uint8_t depth : {16, 24, 32}) {
            const auto image = LoadTGA(Targa(descriptor, depth));
            ASSERT_TRUE(image) << int(descriptor) << " " << int(depth);
            // Row 0 is the bottom: blue, white; row 1 the top: red, green.
            const auto& p = image->Rgb;
            EXPECT_GT(p[2], 200) << int(descriptor);  // bottom left blue
            EXPECT_GT(p[3], 200);                     // bottom right white
            EXPECT_GT(p[6], 200);                     // top left red
            EXPECT_LT(p[7], 50);
            EXPECT_GT(p[10], 200);  // top right green
        }
    }
}

TEST(Background, UnsupportedTargasAreRefused) {
    EXPECT_FALSE(LoadTGA(Targa(0, 24, 10)));  // run-length
    auto mapped = Targa(0);
    mapped[1] = 1;  // colour-mapped
    EXPECT_FALSE(LoadTGA(mapped));
    EXPECT_FALSE(LoadTGA(Targa(0, 8)));  // depth
    auto cut = Targa(0);
    cut.resize(cut.size() - 1);
    EXPECT_FALSE(LoadTGA(cut));
    EXPECT_FALSE(LoadBackgroundPicture("/no/such/picture.png"));
}

}  // namespace
}  // namespace mw
