// The logo travels scrambled inside the program: byte i is combined by exclusive-or with
// digit (i mod 28) of a fixed 28-digit key. The same step scrambles and unscrambles.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace mw {

inline constexpr const char* kLogoKey = "5820471936274018539627148305";

std::vector<std::uint8_t> ScrambleBytes(std::span<const std::uint8_t> bytes);

}  // namespace mw
