// The game-data options every command that reads textures takes: a settings file, and the
// archives and the loose-image folder that override it.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "gamedata/settings.h"
#include "gamedata/texture_loader.h"

namespace mw {

// The lines of the usage text that describe the options.
inline constexpr const char* kGameDataUsage =
    "Game data: [--settings INI] [--d3hog PATH] [--extra13 PATH] [--mission PATH]\n"
    "           [--ogf-path DIR]\n"
    "  The paths of the settings file (the editor's MWUIData.ini), overridden by the options:\n"
    "  d3.hog, Extra13.hog, a mission archive (.mn3) or loose .gam table, and the folder of\n"
    "  loose .ogf/.oaf images (--ogf-dir is the same as --ogf-path). Game files are found\n"
    "  ignoring case.\n";

struct GameDataOptions {
    std::string settingsFile;
    std::optional<std::string> d3, extra13, mission, ogfPath;
};

// Takes args[i] (and its value) when it is a game-data option, moving i past the value.
// False when args[i] is none, or lacks its value.
bool TakeGameDataOption(const std::vector<std::string>& args, std::size_t& i,
                        GameDataOptions& options);

// The settings the options name. Returns 0, or the exit status when the settings file
// cannot be read.
int ResolveGameData(const GameDataOptions& options, Settings& settings, std::ostream& err);

// Reads the archives and GAM tables the settings name, reporting progress and messages on
// `err`.
void ReadGameData(Settings& settings, GameData& game, std::ostream& err);

}  // namespace mw
