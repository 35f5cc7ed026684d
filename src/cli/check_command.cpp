#include <ostream>

#include "cli/cli.h"
#include "cli/game_data_options.h"
#include "cli/json_writer.h"
#include "convert/texture_images.h"
#include "gamedata/texture_loader.h"
#include "model/game_check.h"

namespace mw {
namespace {

constexpr const char* kCheckUsage =
    "Usage: meshwright-cli check MODEL [--json] [game data]\n"
    "Checks the model against the limits of the game's model loader. Each finding has a\n"
    "severity (error: the game refuses the model or stops; warning: the game changes or\n"
    "ignores something), a code, the part concerned and a message. With game data named,\n"
    "textures the game data does not have are reported too. Exit status 0 without errors,\n"
    "1 with at least one.\n";

// Resolves the model's textures without drawing anything.
class NoUploader : public TextureUploader {
  public:
    void AllocModelTextures(int) override {}
    void UploadModelTexture(int, int, int, const std::uint32_t*) override {}
};

std::string PointText(const Finding& f) {
    return f.Point ? std::string(PointTag(f.Point->Type)) + ":" + std::to_string(f.Point->Index)
                   : std::string();
}

}  // namespace

int CheckCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kCheckUsage << kGameDataUsage;
        return 0;
    }
    std::string file;
    GameDataOptions gameData;
    bool json = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--json") {
            json = true;
        } else if (TakeGameDataOption(args, i, gameData)) {
        } else if (!args[i].starts_with("-") && file.empty()) {
            file = args[i];
        } else {
            err << kCheckUsage << kGameDataUsage;
            return kExitUsage;
        }
    }
    if (file.empty()) {
        err << kCheckUsage << kGameDataUsage;
        return kExitUsage;
    }
    ModelData model;
    if (const int status = LoadModelFile(file, model, err)) return status;

    Settings settings;
    if (const int status = ResolveGameData(gameData, settings, err)) return status;
    std::optional<std::vector<bool>> resolved;
    if (NamesGameData(settings)) {
        GameData game;
        ReadGameData(settings, game, err);
        NoUploader uploader;
        LoadedTextures loaded;
        LoadModelTextures(model, file, game, settings, MakeMissingTexture(1), uploader, loaded,
                          DecodePictureFile);
        resolved = FoundInGameData(loaded);
    }
    const std::vector<Finding> findings = CheckModel(model, resolved ? &*resolved : nullptr);

    if (json) {
        JsonWriter j;
        j.beginObject().key("findings").beginArray();
        auto index = [&j](const char* key, int value) {
            if (value < 0) {
                j.key(key).null();
            } else {
                j.field(key, value);
            }
        };
        for (const Finding& f : findings) {
            j.beginObject().field("severity", SeverityName(f.Level)).field("code", f.Code);
            index("subobject", f.SubObject);
            if (f.Point) {
                j.field("point", PointText(f));
            } else {
                j.key("point").null();
            }
            index("texture", f.Texture);
            index("battery", f.Battery);
            j.field("message", f.Message).endObject();
        }
        j.endArray().endObject();
        out << j.str() << "\n";
    } else if (findings.empty()) {
        out << "No findings: the game takes this model as it is.\n";
    } else {
        for (const Finding& f : findings)
            out << SeverityName(f.Level) << " " << f.Code << ": " << f.Message << "\n";
    }
    return HasErrors(findings) ? 1 : 0;
}

}  // namespace mw
