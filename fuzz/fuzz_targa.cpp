// A Targa picture as a texture source: what reads must encode as an OGF image that our
// decoder reads back at the same size.
#include <cstdlib>

#include "gamedata/ogf.h"
#include "gamedata/ogf_writer.h"
#include "gamedata/targa.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto picture = mw::ReadTarga({data, size});
    if (!picture) return 0;
    if (picture->Pixels.size() !=
        static_cast<std::size_t>(picture->Width) * static_cast<std::size_t>(picture->Height)) {
        std::abort();
    }
    if (picture->Width > 512 || picture->Height > 512) return 0;  // encoding is not the target
    const auto bytes = mw::EncodeOGF(*picture, {});
    mw::ByteReader r(bytes);
    mw::clsOGF ogf;
    if (ogf.ReadOGF(r) != mw::OgfStatus::Ok) std::abort();
    if (ogf.Image.Width != picture->Width || ogf.Image.Height != picture->Height) std::abort();
    return 0;
}
