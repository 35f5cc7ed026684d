#include "gamedata/texture_slot.h"

#include <bit>

namespace mw {
namespace {

float FloatAt(const std::array<std::uint8_t, 33>& block, std::size_t at) {
    const std::uint32_t v = static_cast<std::uint32_t>(block[at]) |
                            static_cast<std::uint32_t>(block[at + 1]) << 8 |
                            static_cast<std::uint32_t>(block[at + 2]) << 16 |
                            static_cast<std::uint32_t>(block[at + 3]) << 24;
    return std::bit_cast<float>(v);
}

}  // namespace

float GamTextureProperties::Alpha() const {
    return FloatAt(Block, 12);
}
float GamTextureProperties::AnimationTime() const {
    return FloatAt(Block, 16);
}
float GamTextureProperties::SlideTimeU() const {
    return FloatAt(Block, 20);
}
float GamTextureProperties::SlideTimeV() const {
    return FloatAt(Block, 24);
}

}  // namespace mw
