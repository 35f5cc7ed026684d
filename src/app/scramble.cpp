#include "app/scramble.h"

#include <string_view>

namespace mw {

std::vector<std::uint8_t> ScrambleBytes(std::span<const std::uint8_t> bytes) {
    const std::string_view key(kLogoKey);
    std::vector<std::uint8_t> out(bytes.begin(), bytes.end());
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] ^= static_cast<std::uint8_t>(key[i % key.size()] - '0');
    return out;
}

}  // namespace mw
