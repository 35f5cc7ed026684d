// Small writers for the game's data formats (HOG2 archives, OGF and OAF images of every type,
// GAM tables) as test fixtures need them: any image type, any directory order, pages with
// odd contents. The program's own writers (gamedata/ogf_writer, hog_writer, gam_writer) write
// only what the game itself writes.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "gamedata/ogf_writer.h"

namespace mw {

using Bytes = std::vector<std::uint8_t>;

struct OgfOptions {
    std::uint8_t Type = 2;  // 2, 10, 121..124, 127
    std::uint8_t Depth = 32;
    bool TopDown = true;  // descriptor bit 5 (types 2 and 10)
    int MipLevels = 1;    // levels written after the image (halved each time)
    std::string Name = "image";
    std::uint8_t IdLength = 0;
    bool NamedTrueColour = false;  // types 2 and 10 with a name field (not what the game reads)
};

Bytes WriteOGF(const RgbaImage& image, const OgfOptions& options);

// An animation of equally sized frames; `newerHeader` starts with byte 127.
Bytes WriteOAF(const std::vector<RgbaImage>& frames, const OgfOptions& options,
               bool newerHeader = true);

// An archive of named files, in the order given.
Bytes WriteHOG(const std::vector<std::pair<std::string, Bytes>>& files);

struct GamTexturePage {
    std::string TexName;
    std::string FileName;  // with extension
    float Alpha = 1.0f;
    float AnimationTime = 0.0f;
    float SlideU = 0.0f;
    float SlideV = 0.0f;
    std::uint32_t Flags = 0;
};

// A generic page with every field the game reads, for versions 15 to 27.
struct GamObjectPage {
    std::string Name;
    std::string Models[3];
    std::uint8_t Kind = 0;  // the lighting's render type, which the texture lookup reads
    std::int16_t Version = 27;
    std::uint8_t Type = 2;  // 2 robot, 7 powerup, 11 clutter, 16 building
    float Size = 4.0f;
    std::int32_t HitPoints = 100;
    std::int16_t IdleFrom = 0;  // the standing idle animation range
    std::int16_t IdleTo = 0;
    std::string FirstWeapon;  // battery 0, gun point 0
    std::uint8_t FirstMask = 0;
};

GamObjectPage ObjectPage(std::string name, const std::array<std::string, 3>& models,
                         std::uint8_t kind, std::int16_t version = 27, std::uint8_t type = 2);

class GamWriter {
  public:
    GamWriter& texture(const GamTexturePage& page);
    // A texture page of an older version (1 to 7), procedural when `elements` is not 0.
    GamWriter& oldTexture(const std::string& name, const std::string& bitmap, int version,
                          int elements = 0);
    GamWriter& object(const GamObjectPage& page);
    GamWriter& sound(const std::string& name, const std::string& file);
    GamWriter& door(const std::string& name, const std::string& model, int version = 3);
    // A ship page whose battery 0 fires `weapon` from gun points 0 and 2.
    GamWriter& ship(const std::string& name, const std::string& model, int version = 6,
                    const std::string& weapon = "Laser");
    GamWriter& weapon(const std::string& name, const std::string& fireImage, std::uint32_t flags,
                      int version = 8);
    GamWriter& otherPage(std::uint8_t type, std::size_t bodySize);
    const Bytes& bytes() const { return bytes_; }

  private:
    void page(std::uint8_t type, const Bytes& body);
    Bytes bytes_;
};

}  // namespace mw
