#include <ostream>

#include "cli/cli.h"
#include "cli/game_data_options.h"
#include "cli/terminal_progress.h"
#include "convert/game_name_table.h"
#include "convert/orf_writer.h"
#include "gamedata/file_names.h"
#include "gamedata/gam.h"
#include "gamedata/hog.h"
#include "gamedata/ini_file.h"
#include "gamedata/settings.h"

namespace mw {
namespace {

constexpr const char* kConvertUsage =
    "Usage: meshwright-cli convert IN OUT [--separate-rooms] [--no-special-points]\n"
    "                              [--special-face-size X] [game data]\n"
    "Converts an OOF model to an ORF room, or an ORF room to an OOF model, by the names'\n"
    "endings. The room options default to the settings file's (Combine Rooms on Output,\n"
    "Output Special Points as Faces, Special Face Size); the options override them. Room\n"
    "texture names are translated through the shipped name table and, when game data is\n"
    "named, the game's GAM tables; a name no table knows is kept as the bitmap name.\n";

}  // namespace

int ConvertCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kConvertUsage << kGameDataUsage;
        return 0;
    }
    std::vector<std::string> files;
    GameDataOptions gameData;
    bool separate = false, noPoints = false;
    std::optional<float> faceSize;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (TakeGameDataOption(args, i, gameData)) {
        } else if (a == "--separate-rooms") {
            separate = true;
        } else if (a == "--no-special-points") {
            noPoints = true;
        } else if (a == "--special-face-size" && i + 1 < args.size()) {
            faceSize = ParseFloatText(args[++i]);
            if (!faceSize || *faceSize <= 0.0f) {
                err << kConvertUsage;
                return kExitUsage;
            }
        } else if (!a.starts_with("-")) {
            files.push_back(a);
        } else {
            err << kConvertUsage << kGameDataUsage;
            return kExitUsage;
        }
    }
    const auto isRoom = [](const std::string& f) { return ContainsIgnoringCase(f, ".orf"); };
    if (files.size() != 2 || isRoom(files[0]) == isRoom(files[1])) {
        err << kConvertUsage;
        return kExitUsage;
    }

    Settings settings;
    if (const int status = ResolveGameData(gameData, settings, err)) return status;
    // The game's tables translate texture names both ways: game names for the room, and
    // more rows for the names a room brings.
    clsHOG hog;
    clsGAM gam;
    TerminalProgress progress(err);
    StreamMessages messages(err);
    hog.ReadHOGs(settings, &progress);
    gam.ReadGAMs(hog, settings, &progress, &messages);

    ModelData model;
    if (isRoom(files[0])) {
        const GameNameTable names = GameNameTable::WithGam(gam);
        if (const int status = LoadModelFile(files[0], model, err, &names)) return status;
        return SaveModelFile(files[1], model, err);
    }

    if (const int status = LoadModelFile(files[0], model, err)) return status;
    // A room names its textures by their game names.
    std::vector<TextureSlot> unused(model.Textures.size());
    ApplyTextureNames(model, gam.GetGAMTexInfo(model, unused));
    OrfExportOptions options{settings.CombineRooms, settings.SpecialPointsAsFaces,
                             settings.SpecialFaceSize};
    if (separate) options.CombineRooms = false;
    if (noPoints) options.SpecialPointsAsFaces = false;
    if (faceSize) options.SpecialFaceSize = *faceSize;
    const OrfExportResult result = SaveORF(model, files[1], options);
    if (!result.Written) {
        err << result.Message << "\n";
        return result.Files.empty() && result.Message.find("Error writing") == std::string::npos
                   ? kExitRefused
                   : kExitCantCreate;
    }
    if (!options.CombineRooms) {
        for (const auto& f : result.Files)
            out << f << "\n";
    }
    return 0;
}

}  // namespace mw
