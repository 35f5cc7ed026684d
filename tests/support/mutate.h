// Random damage to a file's bytes for the robustness tests: changed bytes, flipped bits,
// cuts, and large or negative counts.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

namespace mw::test {

inline std::vector<std::uint8_t> Mutated(const std::vector<std::uint8_t>& original,
                                         std::mt19937& rng, int maxEdits = 8) {
    std::vector<std::uint8_t> bytes = original;
    const int edits = 1 + static_cast<int>(rng() % static_cast<unsigned>(maxEdits));
    for (int e = 0; e < edits && !bytes.empty(); ++e) {
        const std::size_t at = rng() % bytes.size();
        switch (rng() % 4) {
            case 0:
                bytes[at] = static_cast<std::uint8_t>(rng());
                break;
            case 1:
                bytes[at] ^= static_cast<std::uint8_t>(1u << (rng() % 8));
                break;
            case 2:
                bytes.resize(at + 1);
                break;
            default:
                bytes[at] = rng() % 2 ? 0xFF : 0x7F;  // the top byte of a count
        }
    }
    return bytes;
}

}  // namespace mw::test
