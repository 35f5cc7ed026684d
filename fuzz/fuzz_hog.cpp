// An archive's directory: index it and look every texture up again by its name.
#include <cstdlib>

#include "gamedata/hog.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<mw::HogDirectoryEntry> entries;
    if (mw::ReadHogEntries({data, size}, entries) != mw::HogStatus::Ok) return 0;
    if (entries.size() * 48 > size) std::abort();
    mw::clsHOG hog;
    hog.AddEntries(entries, 1, nullptr);
    hog.CloseSlot(1, 0, 0);
    for (const auto& t : hog.Textures) {
        std::string name = mw::EntryName(t.Name);
        const auto dot = name.find('.');
        if (dot == std::string::npos) continue;
        if (hog.FindTexture(name.substr(0, dot), 1) < 0 && name.size() == dot + 4) std::abort();
    }
    return 0;
}
