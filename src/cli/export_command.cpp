// meshwright-cli export: a model as glTF 2.0.
#include <ostream>

#include "cli/cli.h"
#include "cli/game_data_options.h"
#include "convert/gltf_export.h"
#include "convert/texture_images.h"

namespace mw {
namespace {

constexpr const char* kExportUsage =
    "Usage: meshwright-cli export MODEL OUT.glb|OUT.gltf [game data]\n"
    "Writes the model as glTF 2.0: .glb is one binary file, .gltf writes the JSON with its\n"
    "buffer (.bin) and pictures (.png) beside it. Sub-objects become nodes with meshes,\n"
    "points become child nodes (Gun_n, Attach_n, Ground_n), key frames one animation;\n"
    "what glTF has no place for is kept in the \"descent3\" extras, so that\n"
    "'meshwright-cli import' gives the model back. Textures the game data resolves are\n"
    "written as pictures.\n";

}  // namespace

int ExportCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kExportUsage << kGameDataUsage;
        return 0;
    }
    GameDataOptions gameData;
    std::vector<std::string> files;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (TakeGameDataOption(args, i, gameData)) continue;
        if (args[i].starts_with("--")) {
            err << kExportUsage << kGameDataUsage;
            return kExitUsage;
        }
        files.push_back(args[i]);
    }
    if (files.size() != 2) {
        err << kExportUsage;
        return kExitUsage;
    }
    ModelData model;
    if (const int status = LoadModelFile(files[0], model, err)) return status;
    Settings settings;
    if (const int status = ResolveGameData(gameData, settings, err)) return status;
    GameData game;
    ReadGameData(settings, game, err);
    const TexturePictures pictures = ResolveTexturePictures(model, files[0], game, settings);
    if (const std::string error = ExportGLTF(model, pictures, files[1]); !error.empty()) {
        err << error << "\n";
        return kExitCantCreate;
    }
    int written = 0;
    for (const auto& p : pictures)
        written += p ? 1 : 0;
    out << "Wrote " << files[1] << " (" << model.SubObjectCount() << " sub-objects, " << written
        << " of " << model.Textures.size() << " textures as pictures).\n";
    return 0;
}

}  // namespace mw
