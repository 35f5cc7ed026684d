// An animation: decode its frames into a store that already holds another texture's.
#include <cstdlib>

#include "gamedata/ogf.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static mw::clsOGF ogf;
    mw::ByteReader r({data, size});
    mw::TextureSlot slot;
    mw::FrameStore store;
    store.Pixels.assign(5, 0);
    ogf.ReadOAF(r, slot, store);
    const std::size_t frames = slot.FrameCount > 0 ? static_cast<std::size_t>(slot.FrameCount) : 0;
    if (store.Pixels.size() != 5 + frames * static_cast<std::size_t>(slot.PixelCount) &&
        slot.FrameCount > 0) {
        std::abort();
    }
    return 0;
}
