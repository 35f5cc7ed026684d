// meshwright-cli package: a model with its new textures and their table pages in one archive.
#include <cstdlib>
#include <ostream>

#include "cli/cli.h"
#include "cli/game_data_options.h"
#include "convert/package.h"
#include "gamedata/hog_writer.h"
#include "gamedata/table_file.h"

namespace mw {
namespace {

constexpr const char* kPackageUsage =
    "Usage: meshwright-cli package MODEL OUT.mn3|OUT.hog [--textures DIR]\n"
    "           [--object NAME --like EXISTING | --replace EXISTING] [--medium M.oof]\n"
    "           [--low L.oof] [game data]\n"
    "Packs the model, every texture it uses that the game data does not have, and a table\n"
    "OUT.gam (the game loads the table of a mission archive by the archive's name) with a\n"
    "texture page for each of them, so that the game shows the model with its textures. A\n"
    "texture is taken from NAME.ogf or NAME.oaf in DIR or the model's folder (copied), else\n"
    "from NAME.png or NAME.tga there (encoded). Prints what went in and what is still\n"
    "missing; exits 0 when nothing is missing, 65 otherwise (the archive is written either\n"
    "way; a texture name too long for the game writes nothing). With --object, the table also\n"
    "gets a page for the model copied from the game data's page EXISTING (a robot, powerup,\n"
    "building or ship) named NAME; --replace keeps EXISTING's name, so the mission's page\n"
    "replaces the game's (the way a mission flies a new ship). Detail models are packed too.\n";

}  // namespace

int PackageCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kPackageUsage << kGameDataUsage;
        return 0;
    }
    GameDataOptions gameData;
    std::vector<std::string> files;
    std::vector<std::filesystem::path> folders;
    PackageObject object;
    bool wantsObject = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (TakeGameDataOption(args, i, gameData)) continue;
        const bool valued = i + 1 < args.size();
        if (args[i] == "--textures" && valued) {
            folders.emplace_back(args[++i]);
        } else if (args[i] == "--object" && valued) {
            object.Name = args[++i];
            wantsObject = true;
        } else if ((args[i] == "--like" || args[i] == "--replace") && valued) {
            object.Replace = args[i] == "--replace";
            object.Like = args[++i];
            wantsObject = true;
        } else if (args[i] == "--medium" && valued) {
            object.Medium = args[++i];
        } else if (args[i] == "--low" && valued) {
            object.Low = args[++i];
        } else if (!args[i].starts_with("--")) {
            files.push_back(args[i]);
        } else {
            err << kPackageUsage;
            return kExitUsage;
        }
    }
    const bool objectComplete =
        !object.Like.empty() && (object.Replace ? object.Name.empty() : !object.Name.empty());
    if (files.size() != 2 || (wantsObject && !objectComplete) ||
        (!wantsObject && (!object.Medium.empty() || !object.Low.empty()))) {
        err << kPackageUsage;
        return kExitUsage;
    }
    Settings settings;
    if (const int status = ResolveGameData(gameData, settings, err)) return status;
    GameData game;
    ReadGameData(settings, game, err);
    std::vector<std::string> skipped;
    const std::vector<NamedTable> tables = ReadGameTables(game.Hog, settings, skipped);
    for (const std::string& s : skipped)
        err << "Note: " << s << "\n";
    const PackageResult result = WritePackage(files[0], files[1], game, settings, folders,
                                              ArchiveTime(std::getenv("SOURCE_DATE_EPOCH")),
                                              wantsObject ? &object : nullptr, &tables);
    for (const std::string& warning : result.Warnings)
        err << "Warning: " << warning << "\n";
    if (!result.Error.empty()) {
        err << result.Error << "\n";
        if (result.ModelUnreadable) return kExitNoInput;
        return result.Refused ? kExitRefused : kExitCantCreate;
    }
    const std::string report = PackageReport(result, files[1]);
    if (result.Missing > 0) {
        // The last line (what is missing) goes to the error stream.
        const std::size_t last = report.rfind('\n', report.size() - 2) + 1;
        out << report.substr(0, last);
        err << report.substr(last);
        return kExitRefused;
    }
    out << report;
    return 0;
}

}  // namespace mw
