// Texture pages of the game's tables, as the game writes and loads them: the page a package
// adds for each texture it brings, so the game finds the texture by its name.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

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

struct TexturePage {
    std::string Name;       // the name models use for the texture
    std::string ImageFile;  // with its extension (.ogf or .oaf)
    int Width = 0;          // decides the size the game loads the texture at
    bool Animated = false;
    float AnimationTime = 1.0f;  // seconds for the whole animation
};

// The flags a plain object texture of that size has (animated when it is an animation).
std::uint32_t ObjectTextureFlags(int width, bool animated);

// One texture page: type, length, then the body the game reads (version, the three names,
// colour, alpha, speed, slides, reflectivity, corona, damage, flags, sound).
std::vector<std::uint8_t> WriteTexturePage(const TexturePage& page);

}  // namespace mw
