// Decoding of the game's texture images: OGF stills (true-colour, run-length and 16-bit
// compressed types) and OAF animations. Pixels come out as 32-bit values with red in the
// lowest byte, then green, blue and alpha, whatever the image type.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "gamedata/texture_slot.h"
#include "model/byte_cursor.h"

namespace mw {

enum class OgfStatus {
    Ok = 0,
    BadType = 1,        // colour map, or an image type that is not supported
    BadDepth = 2,       // pixel depth not 32 or 24
    BadDescriptor = 3,  // descriptor's low bits neither 0 nor 8
    BadCommand = 4,     // 16-bit stream command 1 or above 250
    Damaged = 5,        // data ends early, a run passes the last pixel, or a bad size
};

struct DecodedImage {
    std::vector<std::uint32_t> Pixels;  // Width x Height, rows from the top
    std::int16_t Width = 0;
    std::int16_t Height = 0;
    bool HasAlpha = false;
    std::string Name;
    std::uint8_t MipCount = 0;
    std::uint8_t Type = 0;
    std::uint8_t Depth = 0;
    // False for a plain Targa type (2 or 10) with a name and mip count in its header, which
    // the game does not read for those types.
    bool GameReadsHeader = true;
};

class clsOGF {
  public:
    clsOGF();

    // Decodes the image at the reader's position; on success the reader stands after the
    // full-size image's data (before any mip levels).
    OgfStatus ReadOGF(ByteReader& r);

    // Decodes an animation: every frame goes to the frame store, the texture's slot gets
    // its size and frame fields. A frame that fails ends the animation with the frames
    // decoded before it. Returns the status of the last frame tried.
    OgfStatus ReadOAF(ByteReader& r, TextureSlot& slot, FrameStore& store);

    DecodedImage Image;
    std::array<std::uint8_t, 3> FrameSignature{};

  private:
    // The header after the type byte (with or without the name and mip count) and the pixels.
    OgfStatus ReadBody(ByteReader& r, std::uint8_t idLength, std::uint8_t type, bool named);
    OgfStatus DecodeTrueColour(ByteReader& r, bool runLength, int bytesPerPixel, bool topDown);
    OgfStatus Decode16(ByteReader& r, bool format4444);

    // [byte][0] for the low byte of a 16-bit pixel, [byte][1] for the high byte.
    std::array<std::array<std::uint32_t, 2>, 256> table4444_{};
    std::array<std::array<std::uint32_t, 2>, 256> table1555_{};
};

// True when the image type is one of the 16-bit compressed ones.
bool Is16BitType(std::uint8_t type);

}  // namespace mw
