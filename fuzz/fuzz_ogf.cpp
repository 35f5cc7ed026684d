// A still image: decode it; a decoded image has exactly width x height pixels.
#include <cstdlib>

#include "gamedata/ogf.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static mw::clsOGF ogf;
    mw::ByteReader r({data, size});
    if (ogf.ReadOGF(r) != mw::OgfStatus::Ok) return 0;
    const auto pixels = static_cast<std::size_t>(ogf.Image.Width) * ogf.Image.Height;
    if (ogf.Image.Pixels.size() != pixels || r.pos() > size) std::abort();
    return 0;
}
