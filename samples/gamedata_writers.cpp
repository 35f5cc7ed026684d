#include "gamedata_writers.h"

#include <algorithm>
#include <bit>

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
    // The plain Targa types (2 and 10) carry no name and no mip count: the game reads them
    // as Targa files. `NamedTrueColour` writes the older layout that some tools left.
    const bool trueColour = o.Type == 2 || o.Type == 10;
    if (!trueColour || o.NamedTrueColour) {
        if (o.Type >= 121) {
            NulText(w, o.Name.substr(0, 34));
        } else {
            Name(w, o.Name, 35);
        }
        w.u8(static_cast<std::uint8_t>(o.MipLevels));
    }
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
    // The fields the game reads for a version 7 page, and nothing after them.
    ByteWriter w;
    w.u16(7);
    NulText(w, p.TexName);
    NulText(w, p.FileName);
    NulText(w, "");
    for (float light : {0.25f, 0.5f, 0.75f})
        w.f32(light);
    w.f32(p.Alpha);
    w.f32(p.AnimationTime);
    w.f32(p.SlideU);
    w.f32(p.SlideV);
    w.f32(0.5f);  // reflectivity
    w.u8(0);      // corona
    w.i32(0);     // damage
    w.u32(p.Flags);
    NulText(w, "");  // sound
    w.f32(1.0f);     // sound volume
    page(1, w.release());
    return *this;
}

GamObjectPage ObjectPage(std::string name, const std::array<std::string, 3>& models,
                         std::uint8_t kind, std::int16_t version, std::uint8_t type) {
    GamObjectPage p;
    p.Name = std::move(name);
    for (std::size_t i = 0; i < 3; ++i)
        p.Models[i] = models[i];
    p.Kind = kind;
    p.Version = version;
    p.Type = type;
    return p;
}

GamWriter& GamWriter::object(const GamObjectPage& p) {
    // Every field of a generic page in the game's order for the page's version.
    const int v = p.Version;
    ByteWriter w;
    w.u16(static_cast<std::uint16_t>(v));
    w.u8(p.Type);
    NulText(w, p.Name);
    for (const auto& m : p.Models)
        NulText(w, m);
    for (float f : {1.0f, 0.5f, 3.0f})  // impact size, time, damage
        w.f32(f);
    if (v >= 24) {
        w.u16(30);  // score
    } else {
        w.u8(30);
    }
    if (p.Type == 7 && v >= 25) w.u16(5);  // ammo
    NulText(w, "script");
    if (v >= 18) NulText(w, "module");
    if (v >= 19) NulText(w, "override");
    w.u8(1);
    NulText(w, "A description of the object.");
    NulText(w, "icon");
    w.f32(75.0f);  // detail distances
    w.f32(120.0f);
    for (int i = 0; i < 17; ++i)  // physics
        w.u32(i == 3 || i == 6 ? 0u : std::bit_cast<std::uint32_t>(0.5f * static_cast<float>(i)));
    w.f32(p.Size);
    for (int i = 0; i < 10; ++i)  // lighting
        w.f32(0.1f * static_cast<float>(i));
    w.u32(0);
    w.u32(0);
    w.u8(0);
    w.u8(p.Kind);  // the lighting's render type
    w.i32(p.HitPoints);
    w.u32(0x05);  // flags: AI, destroyable
    w.u32(0);     // AI flags
    for (std::uint8_t b : {1, 2, 3, 4})
        w.u8(b);
    for (int i = 0; i < 4; ++i)
        w.f32(10.0f + static_cast<float>(i));
    w.u32(0);  // notify flags
    for (int i = 0; i < 23; ++i)
        w.f32(0.01f * static_cast<float>(i));
    if (v >= 16) w.f32(4.0f);
    if (v >= 17) {
        for (float f : {0.5f, 10.0f, 50.0f})
            w.f32(f);
    }
    for (int i = 0; i < 2; ++i) {
        w.u8(0);
        w.f32(0.0f);
        w.u16(0);
        NulText(w, i == 0 ? "spew" : "");
    }
    for (int c = 0; c < 5; ++c) {
        for (int a = 0; a < 24; ++a) {
            const int from = c == 0 && a == 10 ? p.IdleFrom : 0;
            const int to = c == 0 && a == 10 ? p.IdleTo : 0;
            if (v < 20) {
                w.u8(static_cast<std::uint8_t>(from));
                w.u8(static_cast<std::uint8_t>(to));
            } else {
                w.u16(static_cast<std::uint16_t>(from));
                w.u16(static_cast<std::uint16_t>(to));
            }
            w.f32(1.0f);
        }
    }
    for (int b = 0; b < 21; ++b) {
        w.f32(0.0f);
        w.f32(0.0f);
        for (int j = 0; j < 8; ++j)
            w.u16(0);
        for (int j = 0; j < 8; ++j) {
            w.u8(b == 0 && j == 0 ? p.FirstMask : 0);
            for (int k = 0; k < 5; ++k)
                w.f32(0.0f);
        }
        w.u8(b == 0 ? 1 : 0);  // masks used
        w.u16(0);
        w.u8(0);
        for (int k = 0; k < 3; ++k)
            w.f32(0.0f);
        if (v >= 15) {
            w.u16(0);
        } else {
            w.u8(0);
        }
        w.u8(0);
    }
    for (int i = 0; i < 21 * 8; ++i)
        NulText(w, i == 0 ? p.FirstWeapon : "");
    NulText(w, "object sound");
    NulText(w, "");
    if (v < 26) NulText(w, "");
    for (int i = 0; i < 5 + 21 * 8 + 5 * 24; ++i)
        NulText(w, "");
    if (v >= 21) w.f32(1.0f);
    if (v >= 22) {
        w.u16(4);
        for (int i = 0; i < 4; ++i) {
            w.u32(0);
            w.f32(0.0f);
            w.f32(0.0f);
            w.u8(i == 0 ? 100 : 0);
        }
    }
    page(10, w.release());
    return *this;
}

GamWriter& GamWriter::oldTexture(const std::string& name, const std::string& bitmap, int version,
                                 int elements) {
    ByteWriter w;
    w.u16(static_cast<std::uint16_t>(version));
    NulText(w, name);
    NulText(w, bitmap);
    NulText(w, "INVALID destroyed");
    for (int i = 0; i < 8; ++i)
        w.f32(0.125f * static_cast<float>(i));
    w.u8(1);
    w.i32(-3);
    w.u32(elements > 0 ? 1u << 24 : 0u);
    if (elements > 0) {
        for (int i = 0; i < 255; ++i)
            w.u16(static_cast<std::uint16_t>(i * 3));
        w.u8(1);
        w.u8(2);
        w.u8(3);
        w.f32(0.5f);
        if (version >= 6) {
            w.f32(0.25f);
            w.u8(9);
        }
        w.u16(static_cast<std::uint16_t>(elements));
        for (int i = 0; i < elements * 8; ++i)
            w.u8(static_cast<std::uint8_t>(i));
    }
    if (version >= 5) {
        if (version < 7) {
            w.i32(12);
        } else {
            NulText(w, "Lava Sound");
        }
        w.f32(0.75f);
    }
    page(1, w.release());
    return *this;
}

GamWriter& GamWriter::sound(const std::string& name, const std::string& file) {
    ByteWriter w;
    w.u16(1);
    NulText(w, name);
    NulText(w, file);
    for (std::int32_t v : {0x10, 100, 2000})
        w.i32(v);
    w.f32(0.5f);
    w.i32(30);
    w.i32(60);
    for (float f : {200.0f, 5.0f, 0.9f})
        w.f32(f);
    page(7, w.release());
    return *this;
}

GamWriter& GamWriter::door(const std::string& name, const std::string& model, int version) {
    ByteWriter w;
    w.u16(static_cast<std::uint16_t>(version));
    NulText(w, name);
    NulText(w, model);
    for (float f : {1.5f, 2.5f, 3.5f})
        w.f32(f);
    w.u8(3);
    if (version >= 3) w.u16(250);
    NulText(w, "DoorOpen");
    NulText(w, "DoorClose");
    if (version >= 2) NulText(w, "doormodule");
    page(5, w.release());
    return *this;
}

namespace {

void Physics(ByteWriter& w) {
    for (int i = 0; i < 17; ++i) {
        if (i == 3 || i == 6) {
            w.u32(static_cast<std::uint32_t>(i));
        } else {
            w.f32(0.25f * static_cast<float>(i));
        }
    }
}

void Lighting(ByteWriter& w) {
    for (int i = 0; i < 10; ++i)
        w.f32(0.5f * static_cast<float>(i));
    w.u32(7);
    w.u32(9);
    w.u8(4);
    w.u8(1);
}

void Battery(ByteWriter& w, bool wideFlags, std::uint8_t mask) {
    w.f32(1.0f);
    w.f32(2.0f);
    for (int j = 0; j < 8; ++j)
        w.u16(static_cast<std::uint16_t>(j));
    for (int j = 0; j < 8; ++j) {
        w.u8(j == 0 ? mask : 0);
        for (int k = 0; k < 5; ++k)
            w.f32(0.1f * static_cast<float>(k));
    }
    w.u8(1);
    w.u16(2);
    w.u8(3);
    for (float f : {0.9f, 100.0f, 0.8f})
        w.f32(f);
    if (wideFlags) {
        w.u16(0x101);
    } else {
        w.u8(1);
    }
    w.u8(5);
}

}  // namespace

GamWriter& GamWriter::ship(const std::string& name, const std::string& model, int version,
                           const std::string& weapon) {
    ByteWriter w;
    w.u16(static_cast<std::uint16_t>(version));
    for (const std::string& text : {name, std::string("cockpit.inf"), std::string("hud.inf"), model,
                                    std::string("dying.oof"), std::string(""), std::string("")})
        NulText(w, text);
    w.f32(75.0f);
    w.f32(120.0f);
    Physics(w);
    w.f32(5.5f);
    w.f32(1.25f);
    w.u32(0x3);
    for (int i = 0; i < 21; ++i) {
        w.u8(static_cast<std::uint8_t>(i));
        NulText(w, i == 0 ? "LaserFire" : "");
        NulText(w, "");
        NulText(w, i == 0 ? "LaserPowerup" : "");
        w.i32(i * 10);
        Battery(w, version >= 6, i == 0 ? 0x05 : 0);
        for (int j = 0; j < 8; ++j)
            NulText(w, "");
        for (int j = 0; j < 8; ++j)
            NulText(w, i == 0 && j == 0 ? weapon : "");
    }
    page(6, w.release());
    return *this;
}

GamWriter& GamWriter::weapon(const std::string& name, const std::string& fireImage,
                             std::uint32_t flags, int version) {
    ByteWriter w;
    w.u16(static_cast<std::uint16_t>(version));
    NulText(w, name);
    NulText(w, "hud.ogf");
    NulText(w, fireImage);
    NulText(w, "particle.ogf");
    w.u8(4);
    w.f32(1.0f);
    w.f32(2.0f);
    w.u32(flags);
    NulText(w, "");
    w.u8(0);
    NulText(w, "");
    NulText(w, "");
    w.u8(0);
    for (int i = 0; i < 6; ++i)
        w.f32(static_cast<float>(i));
    Physics(w);
    w.f32(3.0f);
    w.u8(2);
    w.f32(0.5f);
    NulText(w, "explode.oaf");
    w.f32(1.0f);
    w.f32(2.0f);
    w.f32(10.0f);
    if (version >= 7) w.f32(11.0f);
    for (float f : {1.0f, 2.0f, 3.0f})
        w.f32(f);
    if (version >= 7) w.f32(4.0f);
    w.f32(5.0f);
    w.f32(6.0f);
    Lighting(w);
    if (version >= 8) w.f32(0.5f);
    for (int i = 0; i < 7; ++i)
        NulText(w, i == 0 ? "WeaponFire" : "");
    NulText(w, "smoke.ogf");
    NulText(w, "scorch.ogf");
    w.f32(1.5f);
    NulText(w, "icon.ogf");
    page(2, w.release());
    return *this;
}

GamWriter& GamWriter::otherPage(std::uint8_t type, std::size_t bodySize) {
    page(type, Bytes(bodySize, 0x5A));
    return *this;
}

}  // namespace mw
