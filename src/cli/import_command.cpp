// meshwright-cli import: a model from glTF, OBJ, FBX, Collada and the other common formats.
#include <ostream>

#include "cli/cli.h"
#include "convert/model_import.h"
#include "gamedata/ini_file.h"
#include "model/game_check.h"

namespace mw {
namespace {

constexpr const char* kImportUsage =
    "Usage: meshwright-cli import IN OUT.oof [--scale S]\n"
    "Makes an OOF model from a 3-D file: glTF (.gltf, .glb), or OBJ, FBX, Collada, 3DS, PLY,\n"
    "STL, LWO and the other formats of the Open Asset Import Library. Nodes with meshes\n"
    "become sub-objects, empty nodes named Gun_n, Attach_n and Ground_n their points; a file\n"
    "written by 'meshwright-cli export' comes back exactly. --scale multiplies every\n"
    "position. The model is written even where it breaks the game's limits; the findings of\n"
    "'check' are printed. A file without a mesh, or one that cannot be read, is refused\n"
    "(exit 65) and nothing is written.\n";

}  // namespace

int ImportCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kImportUsage;
        return 0;
    }
    std::vector<std::string> files;
    ImportOptions options;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--scale" && i + 1 < args.size()) {
            const auto scale = ParseFloatText(args[++i]);
            if (!scale || !(*scale > 0.0f)) {
                err << kImportUsage;
                return kExitUsage;
            }
            options.Scale = *scale;
        } else if (!args[i].starts_with("--")) {
            files.push_back(args[i]);
        } else {
            err << kImportUsage;
            return kExitUsage;
        }
    }
    if (files.size() != 2) {
        err << kImportUsage;
        return kExitUsage;
    }
    ImportResult result = ImportModel(files[0], options);
    if (result.Status != ImportStatus::Done) {
        err << files[0] << ": " << result.Error << "\n";
        return kExitRefused;
    }
    if (const int status = SaveModelFile(files[1], result.Model, err)) return status;
    const std::vector<std::string> report = ImportReport(result);
    out << "Wrote " << files[1] << ": " << report.front() << "\n";
    for (std::size_t i = 1; i < report.size(); ++i)
        out << report[i] << "\n";
    for (const Finding& f : CheckModel(result.Model, nullptr))
        out << SeverityName(f.Level) << " " << f.Code << ": " << f.Message << "\n";
    return 0;
}

}  // namespace mw
