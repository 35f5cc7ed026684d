#include "cli/cli.h"

#include <charconv>
#include <iostream>

#include "convert/orf_reader.h"
#include "gamedata/file_names.h"
#include "gamedata/ini_file.h"
#include "gamedata/install_paths.h"
#include "gamedata/settings.h"
#include "model/file_io.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "model/text_codec.h"
#include "model/version.h"

namespace mw {
namespace {

constexpr const char* kUsage =
    "Usage: meshwright-cli COMMAND [ARGS...]\n"
    "\n"
    "Commands:\n"
    "  info FILE [--json] [--geometry]   print a model\n"
    "  resave IN OUT                     read a model and write it again\n"
    "  edit IN OUT OPERATION...          apply model operations, then write OUT\n"
    "  convert IN OUT [OPTIONS]          OOF to ORF room, or ORF room to OOF\n"
    "  export MODEL OUT.glb|OUT.gltf     the model as glTF 2.0, for Blender and viewers\n"
    "  import IN OUT.oof [--scale S]     a model from glTF, OBJ, FBX, Collada, 3DS ...\n"
    "  render MODEL --png OUT [OPTIONS]  draw one frame of the model offscreen\n"
    "  thumbnail MODEL OUT.png [--size N] a square picture for file managers\n"
    "  sheet ARCHIVE|FOLDER --png OUT     a contact sheet of every model there\n"
    "  textures MODEL [OPTIONS]          resolve the model's textures through the game data\n"
    "  check MODEL [--json] [OPTIONS]    check the model against the game's limits\n"
    "  hog list|extract ARCHIVE ...      list or extract the files of a HOG2 archive\n"
    "  hog create|add|remove ARCHIVE ... write a HOG2 archive\n"
    "  image SOURCE [OPTIONS]            decode an OGF or OAF image, optionally to PNG\n"
    "  image encode IN OUT.ogf           encode a picture as an OGF image (also\n"
    "                                    encode-animation OUT.oaf FRAME...)\n"
    "  package MODEL OUT.mn3 [OPTIONS]   the model, its new textures and their table\n"
    "  gam dump|set|add-object|remove|merge  list or change the pages of a GAM table\n"
    "  play MISSION.mn3 [OPTIONS]        try the mission in the open-source engine\n"
    "\n"
    "'meshwright-cli COMMAND --help' describes one command; 'meshwright-cli --version' tells\n"
    "the version.\n";

}  // namespace

bool ParseInt(const std::string& text, int& value) {
    const auto r = std::from_chars(text.data(), text.data() + text.size(), value);
    return !text.empty() && r.ec == std::errc() && r.ptr == text.data() + text.size();
}

bool WantsHelp(const std::vector<std::string>& args) {
    for (const auto& a : args) {
        if (a == "--help" || a == "-h") return true;
    }
    return false;
}

int LoadModelFile(const std::filesystem::path& path, ModelData& model, std::ostream& err,
                  const GameNameTable* names) {
    const auto bytes = ReadFileBytes(path);
    if (!bytes) {
        err << "Cannot open " << path.string() << "\n";
        return kExitNoInput;
    }
    const bool room = ContainsIgnoringCase(path.extension().string(), ".orf");
    const ResultCode result =
        room ? importORF(model, *bytes, names ? *names : GameNameTable::Builtin())
             : readOOF(model, *bytes);
    if (result != ResultCode::Success) {
        err << TranslateError(result) << "\n";
        return static_cast<int>(result);
    }
    CreatePushPop(model);
    return 0;
}

int SaveModelFile(const std::filesystem::path& asked, ModelData& model, std::ostream& err) {
    // The game loads a model only by an .oof name: a .pof (the Blender add-on's name for the
    // same file) is written as the .oof.
    std::filesystem::path path = asked;
    if (LowerCase1252(path.extension().string()) == ".pof") {
        path.replace_extension(".oof");
        err << "Note: writing " << path.string()
            << " (the game loads models only by their .oof names).\n";
    }
    const std::string failure = SaveOOF(model, path);
    if (!failure.empty()) {
        err << failure << "\n";
        return kExitCantCreate;
    }
    return 0;
}

int LoadSettingsFile(const std::string& path, Settings& settings, std::ostream& err) {
    clsIniFile file(path);
    if (!file.Load()) {
        err << "Cannot open " << path << "\n";
        return kExitNoInput;
    }
    LoadSettings(file, settings);
    return 0;
}

int ResaveCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << "Usage: meshwright-cli resave IN OUT\n"
               "Reads the model IN and writes it to OUT as a version 2300 OOF file.\n";
        return 0;
    }
    if (args.size() != 2) {
        err << "Usage: meshwright-cli resave IN OUT\n";
        return kExitUsage;
    }
    ModelData model;
    if (const int status = LoadModelFile(args[0], model, err)) return status;
    return SaveModelFile(args[1], model, err);
}

int RunCli(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.empty()) {
        err << kUsage;
        return kExitUsage;
    }
    const std::string& command = args[0];
    const std::vector<std::string> rest(args.begin() + 1, args.end());
    if (command == "--help" || command == "-h" || command == "help") {
        out << kUsage;
        const auto manual = FindProgramFile(ProgramDir(), kManualIndex);
        if (!manual.empty()) out << "The manual: " << manual.string() << "\n";
        return 0;
    }
    if (command == "--version") {
        out << VersionText() << "\n";
        return 0;
    }
    if (command == "info") return InfoCommand(rest, out, err);
    if (command == "resave") return ResaveCommand(rest, out, err);
    if (command == "edit") return EditCommand(rest, out, err);
    if (command == "convert") return ConvertCommand(rest, out, err);
    if (command == "render") return RenderCommand(rest, out, err);
    if (command == "thumbnail") return ThumbnailCommand(rest, out, err);
    if (command == "sheet") return SheetCommand(rest, out, err);
    if (command == "textures") return TexturesCommand(rest, out, err);
    if (command == "check") return CheckCommand(rest, out, err);
    if (command == "hog") return HogCommand(rest, out, err);
    if (command == "image") return ImageCommand(rest, out, err);
    if (command == "gam") return GamCommand(rest, out, err);
    if (command == "package") return PackageCommand(rest, out, err);
    if (command == "export") return ExportCommand(rest, out, err);
    if (command == "import") return ImportCommand(rest, out, err);
    if (command == "play") return PlayCommand(rest, out, err);
    err << "Unknown command '" << command << "'\n\n" << kUsage;
    return kExitUsage;
}

}  // namespace mw
