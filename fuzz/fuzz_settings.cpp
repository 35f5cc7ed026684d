// A settings file: load it; the settings written back and read again are the same.
#include <cstdlib>

#include "gamedata/settings.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mw::clsIniFile ini;
    ini.SetText({reinterpret_cast<const char*>(data), size});
    mw::Settings first;
    mw::LoadSettings(ini, first);
    mw::SaveSettings(ini, first, [](const std::string&) { return true; });
    mw::clsIniFile again;
    again.SetText(ini.Text());
    mw::Settings second;
    mw::LoadSettings(again, second);
    if (!(first == second)) std::abort();
    return 0;
}
