#include "gamedata_writers.h"

#include <algorithm>

#include "model/byte_cursor.h"

namespace mw {
namespace {

void Name(ByteWriter& w, const std::string& name, std::size_t field) {
    std::string n = name.substr(0, field - 1);
    n.resize(field, '\0');
    w.raw(n);
}

void NulText(ByteWriter& w, const std::string& text) {
    w.raw(text);
    w.u8(0);
}

std::uint32_t Channel(std::uint32_t rgba, int shift) {
    return (rgba >> shift) & 255u;
}

RgbaImage Halved(const RgbaImage& image) {
    RgbaImage half;
    half.Width = std::max(1, image.Width / 2);
    half.Height = std::max(1, image.Height / 2);
    for (int y = 0; y < half.Height; ++y) {
        for (int x = 0; x < half.Width; ++x) {
            half.Pixels.push_back(image.Pixels[static_cast<std::size_t>(
                std::min(2 * y, image.Height - 1) * image.Width +
                std::min(2 * x, image.Width - 1))]);
        }
    }
    return half;
}

void TrueColourPixel(ByteWriter& w, std::uint32_t p, int depth) {
    w.u8(static_cast<std::uint8_t>(Channel(p, 16)));
    w.u8(static_cast<std::uint8_t>(Channel(p, 8)));
    w.u8(static_cast<std::uint8_t>(Channel(p, 0)));
    if (depth == 32) w.u8(static_cast<std::uint8_t>(Channel(p, 24)));
}

void Pixels(ByteWriter& w, const RgbaImage& image, const OgfOptions& o) {
    const bool sixteen = o.Type >= 121;
    std::vector<std::uint32_t> order;  // pixels in file order
    for (int row = 0; row < image.Height; ++row) {
        const int y = sixteen || o.TopDown ? row : image.Height - 1 - row;
        for (int x = 0; x < image.Width; ++x) {
            order.push_back(image.Pixels[static_cast<std::size_t>(y * image.Width + x)]);
        }
    }
    if (sixteen) {
        // Runs of equal 16-bit pixels become repeat commands of up to 250.
        std::vector<std::uint16_t> packed;
        for (auto p : order)
            packed.push_back(o.Type == 121 ? To4444(p) : To1555(p));
        for (std::size_t i = 0; i < packed.size();) {
            std::size_t n = 1;
            while (i + n < packed.size() && n < 250 && packed[i + n] == packed[i])
                ++n;
            w.u8(n == 1 ? 0 : static_cast<std::uint8_t>(n));
            w.u16(packed[i]);
            i += n;
        }
    } else if (o.Type == 10) {
        for (std::size_t i = 0; i < order.size();) {
            std::size_t n = 1;
            while (i + n < order.size() && n < 128 && order[i + n] == order[i])
                ++n;
            if (n > 1) {
                w.u8(static_cast<std::uint8_t>(0x80 | (n - 1)));
                TrueColourPixel(w, order[i], o.Depth);
            } else {
                std::size_t raw = 1;  // distinct pixels up to the next run
                while (i + raw < order.size() && raw < 128 &&
                       (i + raw + 1 >= order.size() || order[i + raw] != order[i + raw + 1])) {
                    ++raw;
                }
                w.u8(static_cast<std::uint8_t>(raw - 1));
                for (std::size_t k = 0; k < raw; ++k)
                    TrueColourPixel(w, order[i + k], o.Depth);
                n = raw;
            }
            i += n;
        }
    } else {
        for (auto p : order)
            TrueColourPixel(w, p, o.Depth);
    }
}

void Image(ByteWriter& w, const RgbaImage& image, const OgfOptions& o) {
    w.u8(o.IdLength);
    w.u8(0);
    w.u8(o.Type);
    if (o.Type >= 121) {
        NulText(w, o.Name.substr(0, 34));
    } else {
        Name(w, o.Name, 35);
    }
    w.u8(static_cast<std::uint8_t>(o.MipLevels));
    for (int i = 0; i < 9; ++i)
        w.u8(0);
    w.u16(static_cast<std::uint16_t>(image.Width));
    w.u16(static_cast<std::uint16_t>(image.Height));
    w.u8(o.Depth);
    w.u8(o.TopDown ? 0x28 : 0x08);
    for (int i = 0; i < o.IdLength; ++i)
        w.u8('#');
    Pixels(w, image, o);
    RgbaImage level = image;
    for (int m = 1; m < o.MipLevels; ++m) {
        level = Halved(level);
        Pixels(w, level, o);
    }
}

}  // namespace

Bytes WriteOGF(const RgbaImage& image, const OgfOptions& options) {
    ByteWriter w;
    Image(w, image, options);
    return w.release();
}

Bytes WriteOAF(const std::vector<RgbaImage>& frames, const OgfOptions& options, bool newerHeader) {
    ByteWriter w;
    if (newerHeader) {
        w.u8(127);
        w.u8(1);
        w.u8(static_cast<std::uint8_t>(frames.size()));
        w.u32(0);
    } else {
        w.u8(static_cast<std::uint8_t>(frames.size()));
        for (int i = 0; i < 16; ++i)
            w.u8(0);
    }
    for (const RgbaImage& f : frames)
        Image(w, f, options);
    return w.release();
}

Bytes WriteHOG(const std::vector<std::pair<std::string, Bytes>>& files) {
    ByteWriter w;
    w.raw("HOG2");
    w.i32(static_cast<std::int32_t>(files.size()));
    w.i32(static_cast<std::int32_t>(68 + 48 * files.size()));
    for (int i = 0; i < 56; ++i)
        w.u8(0xFF);
    for (const auto& [name, data] : files) {
        Name(w, name, 36);
        w.u32(0);
        w.u32(static_cast<std::uint32_t>(data.size()));
        w.u32(0);
    }
    for (const auto& [name, data] : files) {
        w.raw(std::string_view(reinterpret_cast<const char*>(data.data()), data.size()));
    }
    return w.release();
}

void GamWriter::page(std::uint8_t type, const Bytes& body) {
    ByteWriter w;
    w.u8(type);
    w.i32(static_cast<std::int32_t>(body.size() + 4));
    bytes_.insert(bytes_.end(), w.bytes().begin(), w.bytes().end());
    bytes_.insert(bytes_.end(), body.begin(), body.end());
}

GamWriter& GamWriter::texture(const GamTexturePage& p) {
    ByteWriter w;
    w.u16(7);
    NulText(w, p.TexName);
    NulText(w, p.FileName);
    NulText(w, "");
    for (int i = 0; i < 12; ++i)
        w.u8(static_cast<std::uint8_t>(i));
    w.f32(p.Alpha);
    w.f32(p.AnimationTime);
    w.f32(p.SlideU);
    w.f32(p.SlideV);
    for (int i = 28; i < 33; ++i)
        w.u8(0);
    w.u32(0x12345678);
    w.u32(p.Flags);
    w.raw("trailing page data the reader does not need");
    page(1, w.release());
    return *this;
}

GamWriter& GamWriter::object(const GamObjectPage& p) {
    ByteWriter w;
    w.u16(static_cast<std::uint16_t>(p.Version));
    w.u8(p.Type);
    NulText(w, p.Name);
    for (const auto& m : p.Models)
        NulText(w, m);
    for (int i = 0; i < 3; ++i)
        w.u32(0);
    for (int i = 0; i < (p.Version < 24 ? 1 : 2); ++i)
        w.u8(0);
    if (p.Type == 7 && p.Version > 24) w.u16(0);
    NulText(w, "icon");
    if (p.Version > 17) NulText(w, "script");
    if (p.Version > 18) NulText(w, "module");
    w.u8(1);
    NulText(w, "A description of the object.");
    NulText(w, "sound");
    w.u32(0);
    w.u32(0);
    for (int i = 0; i < 68; ++i)
        w.u8(0xAB);
    w.u32(0);
    for (int i = 0; i < 49; ++i)
        w.u8(0xCD);
    w.u8(p.Kind);
    page(10, w.release());
    return *this;
}

GamWriter& GamWriter::otherPage(std::uint8_t type, std::size_t bodySize) {
    page(type, Bytes(bodySize, 0x5A));
    return *this;
}

}  // namespace mw
