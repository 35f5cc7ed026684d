// meshwright-cli thumbnail: a square picture of a model for file managers.
#include <ostream>

#include "cli/cli.h"
#include "cli/model_picture.h"

namespace mw {
namespace {

constexpr const char* kThumbnailUsage =
    "Usage: meshwright-cli thumbnail MODEL OUT.png [--size N] [game data]\n"
    "Draws the model (an OOF model or an ORF room) textured, fitted and centred in a square\n"
    "of N x N pixels (256 unless given) with a transparent background, and writes it as PNG.\n"
    "Without game-data options the editor's settings file names the game data. File\n"
    "managers call this through the thumbnailer entry Meshwright installs.\n";

}  // namespace

int ThumbnailCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kThumbnailUsage << kGameDataUsage;
        return 0;
    }
    std::vector<std::string> files;
    GameDataOptions options;
    int size = 256;
    bool ok = true;
    for (std::size_t i = 0; i < args.size() && ok; ++i) {
        if (args[i] == "--size" && i + 1 < args.size()) {
            ok = ParseInt(args[++i], size) && size >= 16 && size <= 2048;
        } else if (TakeGameDataOption(args, i, options)) {
        } else if (!args[i].starts_with("--")) {
            files.push_back(args[i]);
        } else {
            ok = false;
        }
    }
    if (!ok || files.size() != 2) {
        err << kThumbnailUsage << kGameDataUsage;
        return kExitUsage;
    }
    ModelData model;
    if (const int status = LoadModelFile(files[0], model, err)) return status;
    Settings settings;
    if (const int status = ResolveGameDataOrEditorSettings(options, settings, err)) return status;

    // Drawn at twice the size and scaled down: smoother edges.
    DrawingSession session;
    if (!session.Start(2 * size, 2 * size, settings, err)) return kExitCantCreate;
    PrepareModel(session.view, model, files[0], session.gameDataOrNull(), settings);
    const QImage picture =
        FitIntoSquare(session.view.RenderTransparent(model, ModelOnlyFrame(model)), size);
    if (!picture.save(QString::fromStdString(files[1]), "PNG")) {
        err << "Error writing " << files[1] << "\n";
        return kExitCantCreate;
    }
    return 0;
}

}  // namespace mw
