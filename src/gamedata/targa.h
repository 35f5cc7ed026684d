// Targa pictures as texture sources: true-colour (type 2) and run-length (type 10) images of
// 16, 24 or 32 bits, in any row and column order, with their alpha.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "gamedata/ogf_writer.h"

namespace mw {

// nullopt for colour-mapped, grey or damaged files.
std::optional<RgbaImage> ReadTarga(std::span<const std::uint8_t> bytes);

}  // namespace mw
