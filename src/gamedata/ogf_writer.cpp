#include "gamedata/ogf_writer.h"

#include <algorithm>

#include "model/byte_cursor.h"

namespace mw {
namespace {

std::uint32_t Channel(std::uint32_t rgba, int shift) {
    return (rgba >> shift) & 255u;
}

// The pixels of one level as 3-byte records: a repeat count (0 for a single pixel, 2 to 250
// for a run) and the 16-bit pixel.
void WriteRecords(ByteWriter& w, const RgbaImage& image, bool format4444) {
    std::vector<std::uint16_t> packed(image.Pixels.size());
    for (std::size_t i = 0; i < packed.size(); ++i)
        packed[i] = format4444 ? To4444(image.Pixels[i]) : To1555(image.Pixels[i]);
    const std::size_t total = packed.size();
    std::size_t i = 0;
    while (i < total) {
        const std::uint16_t pixel = packed[i];
        std::size_t run = 1;
        while (run < 250 && i + run < total && packed[i + run] == pixel)
            ++run;
        w.u8(run == 1 ? 0 : static_cast<std::uint8_t>(run));
        w.u16(pixel);
        i += run;
    }
}

void WriteImage(ByteWriter& w, const RgbaImage& image, OgfFormat format, int levels,
                const std::string& name) {
    const bool format4444 = format == OgfFormat::F4444;
    w.u8(0);  // no image ID
    w.u8(0);  // no colour map
    w.u8(format4444 ? kOgfType4444 : kOgfType1555);
    w.raw(name.substr(0, kOgfNameLength));
    w.u8(0);
    w.u8(static_cast<std::uint8_t>(levels));
    for (int i = 0; i < 9; ++i)
        w.u8(0);
    w.u16(static_cast<std::uint16_t>(image.Width));
    w.u16(static_cast<std::uint16_t>(image.Height));
    w.u8(32);
    w.u8(8 + 32);  // 8 alpha bits, rows from the top
    RgbaImage level = image;
    for (int m = 0; m < levels; ++m) {
        if (m > 0) level = HalveImage(level);
        WriteRecords(w, level, format4444);
    }
}

int LevelsFor(const RgbaImage& image, const OgfEncodeOptions& options) {
    const int most = GameMipLevels(image.Width);
    return options.MipLevels < 0 ? most : std::clamp(options.MipLevels, 1, 255);
}

OgfFormat FormatFor(const RgbaImage& image, OgfFormat asked) {
    return asked == OgfFormat::Auto ? ChooseFormat(image) : asked;
}

}  // namespace

std::uint16_t To4444(std::uint32_t p) {
    return static_cast<std::uint16_t>((Channel(p, 24) >> 4) << 12 | (Channel(p, 0) >> 4) << 8 |
                                      (Channel(p, 8) >> 4) << 4 | Channel(p, 16) >> 4);
}

std::uint16_t To1555(std::uint32_t p) {
    return static_cast<std::uint16_t>((Channel(p, 24) >= 128 ? 0x8000 : 0) |
                                      (Channel(p, 0) >> 3) << 10 | (Channel(p, 8) >> 3) << 5 |
                                      Channel(p, 16) >> 3);
}

OgfFormat ChooseFormat(const RgbaImage& image) {
    for (std::uint32_t p : image.Pixels) {
        const std::uint32_t alpha = Channel(p, 24);
        if (alpha != 0 && alpha != 255) return OgfFormat::F4444;
    }
    return OgfFormat::F1555;
}

bool IsPowerOfTwo(int n) {
    return n > 0 && (n & (n - 1)) == 0;
}

int GameMipLevels(int width) {
    int levels = 0;
    for (int w = width; w > 0; w >>= 1)
        ++levels;
    return std::max(levels, 1);
}

RgbaImage HalveImage(const RgbaImage& image) {
    RgbaImage half;
    half.Width = image.Width / 2;
    half.Height = image.Height / 2;
    half.Pixels.resize(static_cast<std::size_t>(half.Width) *
                       static_cast<std::size_t>(half.Height));
    for (int y = 0; y < half.Height; ++y) {
        for (int x = 0; x < half.Width; ++x) {
            std::uint32_t sums[4] = {0, 0, 0, 0};
            std::uint32_t count = 0;
            for (int dy = 0; dy < 2; ++dy) {
                for (int dx = 0; dx < 2; ++dx) {
                    const int sx = 2 * x + dx, sy = 2 * y + dy;
                    if (sx >= image.Width || sy >= image.Height) continue;
                    const std::uint32_t p =
                        image.Pixels[static_cast<std::size_t>(sy) * image.Width + sx];
                    for (int c = 0; c < 4; ++c)
                        sums[c] += Channel(p, 8 * c);
                    ++count;
                }
            }
            std::uint32_t out = 0;
            for (int c = 0; c < 4; ++c)
                out |= ((sums[c] + count / 2) / count) << (8 * c);
            half.Pixels[static_cast<std::size_t>(y) * half.Width + x] = out;
        }
    }
    return half;
}

std::vector<std::uint8_t> EncodeOGF(const RgbaImage& image, const OgfEncodeOptions& options) {
    ByteWriter w;
    w.reserve(64 + image.Pixels.size() * 4);  // every pixel a record, and the mip levels
    WriteImage(w, image, FormatFor(image, options.Format), LevelsFor(image, options), options.Name);
    return w.release();
}

std::vector<std::uint8_t> EncodeOAF(const std::vector<RgbaImage>& frames,
                                    const OgfEncodeOptions& options, float frameTime) {
    ByteWriter w;
    w.u8(127);
    w.u8(1);  // the animation format's version
    w.u8(static_cast<std::uint8_t>(frames.size()));
    w.f32(frameTime);
    // One pixel format for every frame: 4444 as soon as one frame needs it.
    OgfFormat format = options.Format;
    if (format == OgfFormat::Auto) {
        format = OgfFormat::F1555;
        for (const RgbaImage& f : frames) {
            if (ChooseFormat(f) == OgfFormat::F4444) format = OgfFormat::F4444;
        }
    }
    for (const RgbaImage& f : frames)
        WriteImage(w, f, format, LevelsFor(f, options), options.Name);
    return w.release();
}

}  // namespace mw
