#include "gamedata/ogf.h"

#include <algorithm>
#include <cstring>

namespace mw {
namespace {

constexpr std::size_t kNameField = 35;

std::uint32_t Rgba(std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t a) {
    return r | g << 8 | b << 16 | a << 24;
}

}  // namespace

bool Is16BitType(std::uint8_t type) {
    return type >= 121 && type <= 127 && type != 125 && type != 126;
}

clsOGF::clsOGF() {
    for (std::uint32_t b = 0; b < 256; ++b) {
        table4444_[b][0] = (b & 15) * (1u << 20) + (b & 240) * (1u << 8);
        table4444_[b][1] = (b & 15) * (1u << 4) + (b & 240) * (1u << 24);
        table1555_[b][0] = (b & 31) * (1u << 19) + (b & 224) * (1u << 6);
        table1555_[b][1] = (b & 3) * (1u << 14) + (b & 124) * 2 + ((b & 128) ? 255u << 24 : 0);
    }
}

OgfStatus clsOGF::ReadOGF(ByteReader& r) {
    Image = DecodedImage{};
    const std::uint8_t idLength = r.u8();
    const std::uint8_t colourMap = r.u8();
    const std::uint8_t type = r.u8();
    FrameSignature = {idLength, colourMap, type};
    if (!r.ok()) return OgfStatus::Damaged;
    if (colourMap != 0 || (type != 2 && type != 10 && !Is16BitType(type))) {
        return OgfStatus::BadType;
    }
    if (type != 2 && type != 10) return ReadBody(r, idLength, type, true);
    // A plain Targa type: the game reads it without a name or mip count. Files that carry
    // them anyway (older tools wrote a name field) are still read, and marked.
    ByteReader named = r;
    const OgfStatus plain = ReadBody(r, idLength, type, false);
    if (plain == OgfStatus::Ok && Image.Width > 0 && Image.Height > 0) return plain;
    const DecodedImage plainImage = std::move(Image);
    const OgfStatus withName = ReadBody(named, idLength, type, true);
    if (withName != OgfStatus::Ok) {
        Image = plainImage;
        return plain;
    }
    Image.GameReadsHeader = false;
    r = named;
    return withName;
}

OgfStatus clsOGF::ReadBody(ByteReader& r, std::uint8_t idLength, std::uint8_t type, bool named) {
    Image = DecodedImage{};
    Image.Type = type;
    if (named) {
        // The name: a fixed field for the true-colour types, NUL-terminated for the others.
        const std::size_t nameStart = r.pos();
        const std::size_t fieldSize = std::min(kNameField, r.remaining());
        const std::string field = r.text(fieldSize);
        const auto nul = field.find('\0');
        Image.Name = field.substr(0, nul);
        if (type == 2 || type == 10) {
            if (fieldSize < kNameField) return OgfStatus::Damaged;
        } else {
            if (nul == std::string::npos) return OgfStatus::Damaged;
            r.seek(nameStart + nul + 1);
        }
        Image.MipCount = r.u8();
    } else {
        Image.MipCount = 1;
    }
    r.skip(9);
    Image.Width = static_cast<std::int16_t>(r.u16());
    Image.Height = static_cast<std::int16_t>(r.u16());
    Image.Depth = r.u8();
    if (!r.ok()) return OgfStatus::Damaged;
    if (Image.Depth != 32 && Image.Depth != 24) return OgfStatus::BadDepth;
    const std::uint8_t descriptor = r.u8();
    if ((descriptor & 15) != 0 && (descriptor & 15) != 8) return OgfStatus::BadDescriptor;
    r.skip(idLength);
    if (!r.ok() || Image.Width < 0 || Image.Height < 0) return OgfStatus::Damaged;

    if (type == 2 || type == 10) {
        return DecodeTrueColour(r, type == 10, Image.Depth / 8, (descriptor & 0x20) != 0);
    }
    return Decode16(r, type == 121);
}

OgfStatus clsOGF::DecodeTrueColour(ByteReader& r, bool runLength, int bytesPerPixel, bool topDown) {
    const std::size_t w = static_cast<std::size_t>(Image.Width);
    const std::size_t h = static_cast<std::size_t>(Image.Height);
    const std::size_t count = w * h;
    const auto bpp = static_cast<std::size_t>(bytesPerPixel);
    // Refuse sizes the remaining bytes cannot produce before allocating for them.
    const std::size_t most = runLength ? r.remaining() / (1 + bpp) * 128 : r.remaining() / bpp;
    if (count > most) return OgfStatus::Damaged;
    Image.Pixels.assign(count, 0);

    auto readPixel = [&] {
        const std::uint32_t b = r.u8(), g = r.u8(), red = r.u8();
        const std::uint32_t a = bpp == 4 ? r.u8() : 255;
        return Rgba(red, g, b, a);
    };
    // Rows go from the top, or from the bottom up when descriptor bit 5 is clear.
    std::size_t produced = 0;
    auto place = [&](std::uint32_t pixel) {
        const std::size_t row = produced / w, column = produced % w;
        const std::size_t target = topDown ? row : h - 1 - row;
        Image.Pixels[target * w + column] = pixel;
        ++produced;
    };
    while (produced < count) {
        if (!runLength) {
            place(readPixel());
        } else {
            const std::uint8_t packet = r.u8();
            const std::size_t n = (packet & 0x7F) + 1u;
            if (n > count - produced) return OgfStatus::Damaged;
            if (packet & 0x80) {
                const std::uint32_t pixel = readPixel();
                for (std::size_t i = 0; i < n; ++i)
                    place(pixel);
            } else {
                for (std::size_t i = 0; i < n; ++i)
                    place(readPixel());
            }
        }
        if (!r.ok()) return OgfStatus::Damaged;
    }
    return OgfStatus::Ok;
}

OgfStatus clsOGF::Decode16(ByteReader& r, bool format4444) {
    const std::size_t count =
        static_cast<std::size_t>(Image.Width) * static_cast<std::size_t>(Image.Height);
    if (count > r.remaining() / 3 * 250) return OgfStatus::Damaged;
    Image.Pixels.assign(count, 0);
    const auto& table = format4444 ? table4444_ : table1555_;
    std::size_t produced = 0;
    while (produced < count) {
        const std::uint8_t command = r.u8();
        const std::uint8_t low = r.u8();
        const std::uint8_t high = r.u8();
        if (!r.ok()) return OgfStatus::Damaged;
        if (command == 1 || command > 250) return OgfStatus::BadCommand;
        const std::uint32_t pixel = table[low][0] + table[high][1];
        if (format4444 ? (high & 0xF0) != 0xF0 : (high & 0x80) == 0) Image.HasAlpha = true;
        const std::size_t n = command == 0 ? 1 : command;
        if (n > count - produced) return OgfStatus::Damaged;
        std::fill_n(Image.Pixels.begin() + static_cast<std::ptrdiff_t>(produced), n, pixel);
        produced += n;
    }
    return OgfStatus::Ok;
}

OgfStatus clsOGF::ReadOAF(ByteReader& r, TextureSlot& slot, FrameStore& store) {
    const std::uint8_t first = r.u8();
    int frames = first;
    if (first == 127) {
        r.u8();
        frames = r.u8();
        r.skip(4);
    } else {
        r.skip(16);
    }
    if (!r.ok()) return OgfStatus::Damaged;
    OgfStatus status = ReadOGF(r);
    if (status != OgfStatus::Ok) return status;

    const std::size_t pixelCount = Image.Pixels.size();
    slot.HasAlpha = Image.HasAlpha;
    slot.Width = Image.Width;
    slot.Height = Image.Height;
    slot.PixelCount = static_cast<int>(pixelCount);
    slot.FrameCount = frames;
    slot.CurrentFrame = 1;
    slot.FrameTime = frames > 0 ? slot.Gam.AnimationTime() / static_cast<float>(frames) : 0.0f;
    slot.FrameBase = store.Pixels.size();
    slot.FrameClock = 0.0f;
    slot.FrameDirection = 1;
    if (frames < 1) return status;

    store.Pixels.insert(store.Pixels.end(), Image.Pixels.begin(), Image.Pixels.end());
    int decoded = 1;
    for (int f = 1; f < frames; ++f) {
        if (Image.MipCount > 1) {
            // Mip levels follow the frame: the next frame starts with the same three
            // header bytes.
            while (r.remaining() >= 3) {
                const std::size_t at = r.pos();
                if (r.u8() == FrameSignature[0] && r.u8() == FrameSignature[1] &&
                    r.u8() == FrameSignature[2]) {
                    r.seek(at);
                    break;
                }
                r.seek(at + 3);
            }
        }
        status = ReadOGF(r);
        if (status == OgfStatus::Ok && Image.Pixels.size() != pixelCount) {
            status = OgfStatus::Damaged;  // every frame has frame 0's size
        }
        if (status != OgfStatus::Ok) break;
        store.Pixels.insert(store.Pixels.end(), Image.Pixels.begin(), Image.Pixels.end());
        ++decoded;
    }
    // A damaged animation plays the frames it has.
    slot.FrameCount = decoded;
    ++store.AnimatedCount;
    return status;
}

}  // namespace mw
