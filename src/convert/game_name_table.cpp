#include "convert/game_name_table.h"

#include "gamedata/gam.h"

namespace mw {

extern const char* const kRoomTextureNames;

GameNameTable GameNameTable::Builtin() {
    GameNameTable table;
    table.AddRows(kRoomTextureNames);
    return table;
}

GameNameTable GameNameTable::WithGam(const clsGAM& gam) {
    GameNameTable table = Builtin();
    for (const GamTextureEntry& e : gam.Textures)
        table.AddRow(e.TexName, e.FileName);
    return table;
}

void GameNameTable::AddRows(std::string_view text) {
    while (!text.empty()) {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        const auto comma = line.find(',');
        if (line.empty() || line.front() == '#' || comma == std::string_view::npos) continue;
        AddRow(std::string(line.substr(0, comma)), std::string(line.substr(comma + 1)));
    }
}

void GameNameTable::AddRow(std::string gameName, std::string bitmapName) {
    rows_.emplace_back(std::move(gameName), std::move(bitmapName));
}

}  // namespace mw
