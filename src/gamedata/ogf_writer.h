// Encoding of the game's texture images: OGF stills and OAF animations in the compressed,
// mip-mapped 16-bit form the game writes itself (image type 121 for the 4444 pixel format,
// 122 for 1555), each mip level a box-filtered half of the one before.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace mw {

// Pixels are 32-bit values with red in the lowest byte, then green, blue and alpha; rows
// from the top.
struct RgbaImage {
    int Width = 0;
    int Height = 0;
    std::vector<std::uint32_t> Pixels;
};

enum class OgfFormat { Auto, F1555, F4444 };

inline constexpr std::uint8_t kOgfType4444 = 121;
inline constexpr std::uint8_t kOgfType1555 = 122;
// The image name field holds this many characters before its NUL.
inline constexpr std::size_t kOgfNameLength = 34;
// The game's renderer is known to fail on textures with a side above this.
inline constexpr int kLargestSafeTextureSide = 256;

struct OgfEncodeOptions {
    OgfFormat Format = OgfFormat::Auto;
    int MipLevels = -1;  // -1: as many as the game builds for the width; at least 1
    std::string Name;    // the image name stored in the file (cut to kOgfNameLength)
};

// The 16-bit forms of a pixel: each channel cut to its 4 or 5 top bits; 1555's alpha bit is
// set for alpha 128 and above.
std::uint16_t To4444(std::uint32_t rgba);
std::uint16_t To1555(std::uint32_t rgba);

// 4444 when some alpha lies strictly between 0 and 255, else 1555.
OgfFormat ChooseFormat(const RgbaImage& image);
bool IsPowerOfTwo(int n);
// The number of mip levels the game keeps for a texture this wide: the width, halved until
// nothing is left (64 -> 7).
int GameMipLevels(int width);
// The next mip level: each pixel the rounded mean of the 2 x 2 block above it (of what the
// block has inside the image). The sides are halved rounding down, as the game sizes levels.
RgbaImage HalveImage(const RgbaImage& image);

// One image as an OGF file.
std::vector<std::uint8_t> EncodeOGF(const RgbaImage& image, const OgfEncodeOptions& options);
// Equally sized frames as an OAF animation with the newer header (127, version 1, the frame
// count, then the seconds each frame shows as a float).
std::vector<std::uint8_t> EncodeOAF(const std::vector<RgbaImage>& frames,
                                    const OgfEncodeOptions& options, float frameTime);

}  // namespace mw
