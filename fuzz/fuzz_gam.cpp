// A GAM table: read its pages, then give a model the textures it names.
#include <cstdlib>

#include "gamedata/gam.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mw::clsGAM gam;
    gam.ReadGamTable({data, size}, 0, 1, nullptr);
    if (gam.Textures.size() > mw::kMaxGamEntries || gam.Objects.size() > mw::kMaxGamEntries) {
        std::abort();
    }
    mw::ModelData model;
    for (std::size_t i = 0; i < gam.Textures.size() && i < 8; ++i) {
        model.Textures.push_back({"", gam.Textures[i].FileName, ""});
        model.Textures.push_back({gam.Textures[i].TexName, "", ""});
    }
    std::vector<mw::TextureSlot> slots(model.Textures.size());
    gam.GetGAMTexInfo(model, slots);
    for (const auto& o : gam.Objects)
        gam.GetGAMOBJInfo("/m/" + o.Model1);
    return 0;
}
