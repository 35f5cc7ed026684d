// Texture pages of the game's tables, as the game writes and loads them: the page a package
// adds for each texture it brings, so the game finds the texture by its name.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "model/game_check.h"

namespace mw {

// Texture flags the game's loader reads from a page.
inline constexpr std::uint32_t kTexFlagAnimated = 1u << 6;
inline constexpr std::uint32_t kTexFlagObject = 1u << 12;
inline constexpr std::uint32_t kTexFlagSize64 = 1u << 13;
inline constexpr std::uint32_t kTexFlagSize32 = 1u << 15;
inline constexpr std::uint32_t kTexFlagSize256 = 1u << 28;
inline constexpr std::uint8_t kTexturePageType = 1;
inline constexpr std::int16_t kTexturePageVersion = 7;
// A page name holds this many characters before its NUL.
inline constexpr std::size_t kPageNameLength = 34;

// The longest texture name whose image file name (NAME.ogf) the game still loads.
inline constexpr std::size_t kMaxTextureNameLength = kGameMaxTextureNameLength;

struct TexturePage {
    std::string Name;       // the name models use for the texture
    std::string ImageFile;  // with its extension (.ogf or .oaf)
    int Width = 0;          // with the height, decides the size the game loads it at
    int Height = 0;
    bool Animated = false;
    // The page's speed: seconds for the whole animation (the game shows each frame for
    // speed / frames and ignores the frame time the OAF itself holds).
    float AnimationTime = 1.0f;
};

// The flags a plain object texture of that size has (animated when it is an animation). The
// larger side decides the size class, so the game never scales a picture down.
std::uint32_t ObjectTextureFlags(int width, int height, bool animated);

// The frame count and frame time an OAF's header holds (the newer header only; the older
// one has no frame time, which then reads 0). nullopt when the bytes are no OAF.
struct OafTiming {
    int Frames = 0;
    float FrameTime = 0.0f;
};
std::optional<OafTiming> ReadOafTiming(std::span<const std::uint8_t> bytes);

// One texture page: type, length, then the body the game reads (version, the three names,
// colour, alpha, speed, slides, reflectivity, corona, damage, flags, sound).
std::vector<std::uint8_t> WriteTexturePage(const TexturePage& page);

}  // namespace mw
