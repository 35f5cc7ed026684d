#include "gamedata/targa.h"

#include "model/byte_cursor.h"

namespace mw {
namespace {

std::uint32_t ReadPixel(ByteReader& r, int bytesPerPixel) {
    if (bytesPerPixel == 2) {
        const std::uint16_t v = r.u16();
        const std::uint32_t red = ((v >> 10) & 31u) * 8, green = ((v >> 5) & 31u) * 8,
                            blue = (v & 31u) * 8;
        return red | green << 8 | blue << 16 | 255u << 24;
    }
    const std::uint32_t blue = r.u8(), green = r.u8(), red = r.u8();
    const std::uint32_t alpha = bytesPerPixel == 4 ? r.u8() : 255u;
    return red | green << 8 | blue << 16 | alpha << 24;
}

}  // namespace

std::optional<RgbaImage> ReadTarga(std::span<const std::uint8_t> bytes) {
    ByteReader r(bytes);
    const std::uint8_t idLength = r.u8();
    const std::uint8_t colourMapType = r.u8();
    const std::uint8_t imageType = r.u8();
    r.skip(5 + 4);  // colour map fields, origin
    const int width = r.u16();
    const int height = r.u16();
    const std::uint8_t depth = r.u8();
    const std::uint8_t descriptor = r.u8();
    r.skip(idLength);
    if (!r.ok() || colourMapType != 0 || (imageType != 2 && imageType != 10)) return std::nullopt;
    const int bytesPerPixel = depth == 15 || depth == 16 ? 2
                              : depth == 24              ? 3
                              : depth == 32              ? 4
                                                         : 0;
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (bytesPerPixel == 0 || width == 0 || height == 0) return std::nullopt;
    // A run-length file holds at least a packet (a byte and a pixel) per 128 pixels.
    const bool fits = imageType == 2 ? r.canHold(static_cast<std::int64_t>(count),
                                                 static_cast<std::size_t>(bytesPerPixel))
                                     : r.canHold(static_cast<std::int64_t>(count / 128),
                                                 static_cast<std::size_t>(bytesPerPixel) + 1);
    if (!fits) return std::nullopt;
    std::vector<std::uint32_t> file;  // pixels in file order
    file.reserve(count);
    while (file.size() < count) {
        if (imageType == 2) {
            file.push_back(ReadPixel(r, bytesPerPixel));
        } else {
            const std::uint8_t packet = r.u8();
            const std::size_t n = std::min<std::size_t>((packet & 0x7Fu) + 1u, count - file.size());
            if (packet & 0x80) {
                file.insert(file.end(), n, ReadPixel(r, bytesPerPixel));
            } else {
                for (std::size_t i = 0; i < n; ++i)
                    file.push_back(ReadPixel(r, bytesPerPixel));
            }
        }
        if (!r.ok()) return std::nullopt;
    }
    // Bit 4: columns run right to left; bit 5: rows run top to bottom (else bottom up).
    const bool mirrorColumns = (descriptor & 0x10) != 0;
    const bool topDown = (descriptor & 0x20) != 0;
    RgbaImage image{width, height, std::vector<std::uint32_t>(count)};
    for (int y = 0; y < height; ++y) {
        const int row = topDown ? y : height - 1 - y;
        for (int x = 0; x < width; ++x) {
            const int column = mirrorColumns ? width - 1 - x : x;
            image.Pixels[static_cast<std::size_t>(row) * width + column] =
                file[static_cast<std::size_t>(y) * width + x];
        }
    }
    return image;
}

}  // namespace mw
