#include "support/engine_pages.h"

#include <cstring>
#include <stdexcept>

namespace mw::test {
namespace {

// Reads like the game's file reader; running past the data throws (caught per table).
class In {
  public:
    explicit In(std::span<const std::uint8_t> b) : b_(b) {}
    std::size_t pos = 0;
    bool atEnd() const { return pos >= b_.size(); }
    std::uint8_t byte() {
        if (pos >= b_.size()) throw std::runtime_error("read past the data");
        return b_[pos++];
    }
    std::int16_t i16() {
        const std::uint16_t lo = byte();
        return static_cast<std::int16_t>(lo | byte() << 8);
    }
    std::int32_t i32() {
        std::uint32_t v = 0;
        for (int i = 0; i < 4; ++i)
            v |= static_cast<std::uint32_t>(byte()) << (8 * i);
        return static_cast<std::int32_t>(v);
    }
    float f32() {
        const std::int32_t v = i32();
        float f;
        std::memcpy(&f, &v, 4);
        return f;
    }
    std::string str() {
        std::string s;
        for (char c = static_cast<char>(byte()); c != 0; c = static_cast<char>(byte()))
            s.push_back(c);
        return s;
    }
    void floats(int n) {
        for (int i = 0; i < n; ++i)
            f32();
    }

  private:
    std::span<const std::uint8_t> b_;
};

void Physics(In& in) {
    in.floats(3);   // mass, drag, full thrust
    in.i32();       // flags
    in.floats(2);   // rotational drag, full rotational thrust
    in.i32();       // bounces
    in.floats(10);  // velocity z, rotational velocity, wiggle, restitution, hit dot, turn-roll
}

void Lighting(In& in) {
    in.floats(10);
    in.i32();
    in.i32();
    in.byte();
    in.byte();
}

void Battery(In& in, int chunkVersion, EnginePage& p) {
    in.floats(2);
    for (int j = 0; j < 8; ++j)
        in.i16();
    for (int j = 0; j < 8; ++j) {
        p.Masks.push_back(in.byte());
        in.floats(5);
    }
    in.byte();
    in.i16();
    in.byte();
    in.floats(3);
    if (chunkVersion >= 2) {
        in.i16();
    } else {
        in.byte();
    }
    in.byte();
}

void Texture(In& in, EnginePage& p) {
    p.Version = in.i16();
    p.Name = in.str();
    p.Bitmap = in.str();
    in.str();
    in.floats(4);
    p.Speed = in.f32();
    in.floats(3);
    in.byte();
    in.i32();
    p.Flags = static_cast<std::uint32_t>(in.i32());
    if (p.Flags & (1u << 24)) {
        for (int i = 0; i < 255; ++i)
            in.i16();
        in.byte();
        in.byte();
        in.byte();
        in.f32();
        if (p.Version >= 6) {
            in.f32();
            in.byte();
        }
        const int n = in.i16();
        for (int i = 0; i < n * 8; ++i)
            in.byte();
    }
    if (p.Version >= 5) {
        if (p.Version < 7) {
            in.i32();
        } else {
            in.str();
        }
        in.f32();
    }
}

void Sound(In& in, EnginePage& p) {
    p.Version = in.i16();
    p.Name = in.str();
    p.Bitmap = in.str();  // the raw sound file
    in.i32();
    in.i32();
    in.i32();
    in.f32();
    in.i32();
    in.i32();
    in.floats(3);
}

void Door(In& in, EnginePage& p) {
    p.Version = in.i16();
    p.Name = in.str();
    p.Models.push_back(in.str());
    in.floats(3);
    in.byte();
    if (p.Version >= 3) in.i16();
    in.str();
    in.str();
    if (p.Version >= 2) in.str();
}

void Generic(In& in, EnginePage& p) {
    p.Version = in.i16();
    const int type = in.byte();
    p.Name = in.str();
    for (int i = 0; i < 3; ++i)
        p.Models.push_back(in.str());
    in.floats(3);
    if (p.Version >= 24) {
        in.i16();
    } else {
        in.byte();
    }
    if (type == 7 && p.Version >= 25) in.i16();
    in.str();
    if (p.Version >= 18) in.str();
    if (p.Version >= 19) in.str();
    if (in.byte() != 0) in.str();
    in.str();
    in.floats(2);
    Physics(in);
    p.Size = in.f32();
    Lighting(in);
    p.HitPoints = in.i32();
    in.i32();
    in.i32();
    for (int i = 0; i < 4; ++i)
        in.byte();
    in.floats(4);
    in.i32();
    in.floats(23);
    if (p.Version >= 16) in.f32();
    if (p.Version >= 17) in.floats(3);
    for (int i = 0; i < 2; ++i) {
        in.byte();
        in.f32();
        in.i16();
        in.str();
    }
    for (int c = 0; c < 5; ++c) {
        for (int a = 0; a < 24; ++a) {
            if (p.Version < 20) {
                p.AnimFrom[c][a] = in.byte();
                p.AnimTo[c][a] = in.byte();
            } else {
                p.AnimFrom[c][a] = in.i16();
                p.AnimTo[c][a] = in.i16();
            }
            in.f32();
        }
    }
    for (int b = 0; b < 21; ++b)
        Battery(in, p.Version >= 15 ? 2 : 1, p);
    for (int i = 0; i < 21 * 8; ++i)
        p.Weapons.push_back(in.str());
    for (int i = 0; i < 2; ++i)
        in.str();
    if (p.Version < 26) in.str();
    for (int i = 0; i < 5 + 21 * 8 + 5 * 24; ++i)
        in.str();
    if (p.Version >= 21) in.f32();
    if (p.Version >= 22) {
        const int n = in.i16();
        for (int i = 0; i < n; ++i) {
            in.i32();
            in.floats(2);
            in.byte();
        }
    }
}

void Ship(In& in, EnginePage& p) {
    p.Version = in.i16();
    p.Name = in.str();
    in.str();  // cockpit
    in.str();  // HUD configuration
    for (int i = 0; i < 4; ++i)
        p.Models.push_back(in.str());  // model, dying, medium, low
    in.floats(2);
    Physics(in);
    p.Size = in.f32();
    in.f32();
    in.i32();
    for (int i = 0; i < 21; ++i) {
        in.byte();
        in.str();
        in.str();
        in.str();
        in.i32();
        Battery(in, p.Version >= 6 ? 2 : 1, p);
        for (int j = 0; j < 8; ++j)
            in.str();  // fire sounds
        for (int j = 0; j < 8; ++j)
            p.Weapons.push_back(in.str());
    }
}

void Weapon(In& in, EnginePage& p) {
    p.Version = in.i16();
    p.Name = in.str();
    in.str();                      // HUD image
    p.Models.push_back(in.str());  // fire image
    in.str();                      // particle
    in.byte();
    in.floats(2);
    p.Flags = static_cast<std::uint32_t>(in.i32());
    in.str();
    in.byte();
    in.str();
    in.str();
    in.byte();
    in.floats(6);
    Physics(in);
    in.f32();
    in.byte();
    in.f32();
    in.str();
    in.floats(2);
    in.f32();
    if (p.Version >= 7) in.f32();
    in.floats(3);
    if (p.Version >= 7) in.f32();
    in.floats(2);
    Lighting(in);
    if (p.Version >= 8) in.f32();
    for (int i = 0; i < 7; ++i)
        in.str();
    in.str();
    in.str();
    in.f32();
    in.str();
}

}  // namespace

EngineTable ReadAsEngine(std::span<const std::uint8_t> table) {
    EngineTable t;
    In in(table);
    try {
        while (!in.atEnd()) {
            EnginePage p;
            p.Type = in.byte();
            const std::size_t start = in.pos;
            p.Declared = static_cast<std::size_t>(in.i32());
            switch (p.Type) {
                case 1:
                    Texture(in, p);
                    break;
                case 2:
                    Weapon(in, p);
                    break;
                case 5:
                    Door(in, p);
                    break;
                case 6:
                    Ship(in, p);
                    break;
                case 7:
                    Sound(in, p);
                    break;
                case 10:
                    Generic(in, p);
                    break;
                default:
                    t.Error = "unrecognized page type " + std::to_string(p.Type);
                    return t;
            }
            p.Read = in.pos - start;
            if (p.Read != p.Declared) {
                t.Error = "page \"" + p.Name + "\" declares " + std::to_string(p.Declared) +
                          " bytes but its fields take " + std::to_string(p.Read);
                t.Pages.push_back(p);
                return t;
            }
            t.Pages.push_back(std::move(p));
        }
    } catch (const std::exception& e) {
        t.Error = e.what();
    }
    return t;
}

}  // namespace mw::test
