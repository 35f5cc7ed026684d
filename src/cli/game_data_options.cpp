#include "cli/game_data_options.h"

#include "cli/cli.h"
#include "cli/terminal_progress.h"

namespace mw {

bool TakeGameDataOption(const std::vector<std::string>& args, std::size_t& i,
                        GameDataOptions& options) {
    if (i + 1 >= args.size()) return false;
    const std::string& a = args[i];
    const std::string& value = args[i + 1];
    if (a == "--settings") {
        options.settingsFile = value;
    } else if (a == "--d3hog") {
        options.d3 = value;
    } else if (a == "--extra13") {
        options.extra13 = value;
    } else if (a == "--mission") {
        options.mission = value;
    } else if (a == "--ogf-path" || a == "--ogf-dir") {
        options.ogfPath = value;
    } else {
        return false;
    }
    ++i;
    return true;
}

int ResolveGameData(const GameDataOptions& options, Settings& settings, std::ostream& err) {
    if (!options.settingsFile.empty()) {
        if (const int status = LoadSettingsFile(options.settingsFile, settings, err)) return status;
    }
    if (options.d3) settings.D3HogPath = *options.d3;
    if (options.mission) settings.MN3GAMPath = *options.mission;
    if (options.ogfPath) settings.OGFPath = *options.ogfPath;
    DeriveArchivePaths(settings);
    if (options.extra13) settings.Extra13Path = *options.extra13;
    return 0;
}

void ReadGameData(Settings& settings, GameData& game, std::ostream& err) {
    TerminalProgress progress(err);
    StreamMessages messages(err);
    game.Hog.ReadHOGs(settings, &progress);
    game.Gam.ReadGAMs(game.Hog, settings, &progress, &messages);
}

}  // namespace mw
