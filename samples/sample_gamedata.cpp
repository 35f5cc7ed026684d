#include "sample_gamedata.h"

#include "model/oof_writer.h"
#include "sample_model.h"

#include <algorithm>
#include <cmath>

namespace mw {
namespace {

std::uint32_t Rgba(int r, int g, int b, int a = 255) {
    auto c = [](int v) { return static_cast<std::uint32_t>(std::clamp(v, 0, 255)); };
    return c(r) | c(g) << 8 | c(b) << 16 | c(a) << 24;
}

template <typename Fn>
RgbaImage Paint(int w, int h, Fn&& colour) {
    RgbaImage image{w, h, {}};
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x)
            image.Pixels.push_back(colour(x, y));
    }
    return image;
}

// Grey hull plates with dark seams, rivets and a red marking in the top left corner.
RgbaImage Hull() {
    return Paint(64, 64, [](int x, int y) {
        if (x < 16 && y < 8) return Rgba(190, 40, 30);
        if (x % 32 == 0 || y % 16 == 0) return Rgba(60, 62, 70);
        if (x % 32 == 3 && y % 16 == 3) return Rgba(210, 210, 215);
        const int shade = 140 + ((x / 32 + y / 16) % 2) * 18;
        return Rgba(shade, shade, shade + 8);
    });
}

// Yellow and black hazard stripes that slide along the wing.
RgbaImage Wing() {
    return Paint(32, 32, [](int x, int y) {
        return ((x + y) / 8) % 2 == 0 ? Rgba(230, 200, 40) : Rgba(30, 30, 30);
    });
}

// A turret light that pulses from dark to bright green over four frames.
std::vector<RgbaImage> TurretFrames() {
    std::vector<RgbaImage> frames;
    for (int f = 0; f < 4; ++f) {
        frames.push_back(Paint(32, 32, [f](int x, int y) {
            const int dx = x - 16, dy = y - 16;
            if (dx * dx + dy * dy < 64) return Rgba(20, 90 + 55 * f, 30);
            return Rgba(100, 104, 110);
        }));
    }
    return frames;
}

// A soft white ball for glowing parts.
RgbaImage Thrustball() {
    return Paint(32, 32, [](int x, int y) {
        const double d = std::sqrt((x - 15.5) * (x - 15.5) + (y - 15.5) * (y - 15.5));
        const int v = static_cast<int>(std::max(0.0, 1.0 - d / 16.0) * 255.0);
        return Rgba(v, v, v, v);
    });
}

}  // namespace

Bytes BuildSampleArchive() {
    OgfOptions hull{10, 24, false, 1, "ship_hull", 0};
    OgfOptions wing{122, 32, true, 1, "ship_wing", 0};
    OgfOptions turret{121, 32, true, 3, "ship_turret", 0};
    OgfOptions glow{121, 32, true, 1, "thrustball", 0};
    GamWriter gam;
    gam.texture({"Sample Hull", "ship_hull.ogf", 1.0f, 0.0f, 0.0f, 0.0f, 0});
    gam.texture({"Sample Wing Stripes", "ship_wing.ogf", 1.0f, 0.0f, 2.0f, 0.0f, 0});
    // Four frames of a quarter second each: the game shows a frame for speed / frames.
    gam.texture({"Sample Turret Light", "ship_turret.oaf", 1.0f, 1.0f, 0.0f, 0.0f, 0x40});
    gam.texture({"thrustball", "thrustball.ogf", 1.0f, 0.0f, 0.0f, 0.0f, 0x4000});
    GamObjectPage ship;
    ship.Name = "Sample Ship";
    ship.Models[0] = "ship.oof";
    ship.Kind = 1;
    ship.FirstWeapon = "Laser";
    ship.FirstMask = 1;
    gam.object(ship);
    // Directories are sorted by name, as the game's archives are.
    ModelData model = BuildSampleModel();
    return WriteHOG({{"sample.gam", gam.bytes()},
                     {"ship.oof", WriteOOF(model)},
                     {"ship_hull.ogf", WriteOGF(Hull(), hull)},
                     {"ship_turret.oaf", WriteOAF(TurretFrames(), turret)},
                     {"ship_wing.ogf", WriteOGF(Wing(), wing)},
                     {"thrustball.ogf", WriteOGF(Thrustball(), glow)}});
}

}  // namespace mw
