#include "gamedata/gam_writer.h"

#include <algorithm>

#include "model/byte_cursor.h"

namespace mw {
namespace {

void NulText(ByteWriter& w, const std::string& text) {
    w.raw(text.substr(0, kPageNameLength));
    w.u8(0);
}

}  // namespace

std::optional<OafTiming> ReadOafTiming(std::span<const std::uint8_t> bytes) {
    ByteReader r(bytes);
    OafTiming timing;
    if (r.u8() == 127) {
        r.u8();  // version
        timing.Frames = r.u8();
        timing.FrameTime = r.f32();
    } else {
        timing.Frames = bytes.empty() ? 0 : bytes[0];
    }
    if (!r.ok()) return std::nullopt;
    return timing;
}

std::uint32_t ObjectTextureFlags(int width, int height, bool animated) {
    std::uint32_t flags = kTexFlagObject;
    const int side = std::max(width, height);
    if (side <= 32) {
        flags |= kTexFlagSize32;
    } else if (side <= 64) {
        flags |= kTexFlagSize64;
    } else if (side > 128) {
        flags |= kTexFlagSize256;
    }
    if (animated) flags |= kTexFlagAnimated;
    return flags;
}

std::vector<std::uint8_t> WriteTexturePage(const TexturePage& page) {
    ByteWriter w;
    w.u8(kTexturePageType);
    w.i32(0);  // the length, patched below
    w.u16(static_cast<std::uint16_t>(kTexturePageVersion));
    NulText(w, page.Name);
    NulText(w, page.ImageFile);
    NulText(w, "");  // no destroyed picture
    for (int i = 0; i < 3; ++i)
        w.f32(0.0f);  // red, green, blue of the light the texture gives: none
    w.f32(1.0f);      // alpha
    w.f32(page.AnimationTime);
    w.f32(0.0f);  // slide u
    w.f32(0.0f);  // slide v
    w.f32(0.5f);  // reflectivity
    w.u8(0);      // corona
    w.i32(0);     // damage
    w.u32(ObjectTextureFlags(page.Width, page.Height, page.Animated));
    NulText(w, "");  // no sound
    w.f32(1.0f);     // sound volume
    std::vector<std::uint8_t> bytes = w.release();
    // The length counts from its own first byte to the end of the page.
    const auto length = static_cast<std::uint32_t>(bytes.size() - 1);
    for (int i = 0; i < 4; ++i)
        bytes[1 + static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(length >> (8 * i));
    return bytes;
}

}  // namespace mw
