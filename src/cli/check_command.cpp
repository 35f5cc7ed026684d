#include <ostream>

#include "cli/cli.h"
#include "cli/game_data_options.h"
#include "cli/json_writer.h"
#include "convert/texture_images.h"
#include "gamedata/file_names.h"
#include "gamedata/table_check.h"
#include "gamedata/table_file.h"
#include "gamedata/texture_loader.h"
#include "model/file_io.h"
#include "model/game_check.h"
#include "model/text_codec.h"

namespace mw {
namespace {

constexpr const char* kCheckUsage =
    "Usage: meshwright-cli check MODEL|TABLE.gam|ARCHIVE [--json] [game data]\n"
    "Checks a model against the limits of the game's model loader, or a table or archive\n"
    "against its table loader and archive lookup. Each finding has a severity (error: the game\n"
    "refuses it or stops; warning: the game changes or ignores something), a code, the part\n"
    "concerned and a message. With game data named, a model's textures the game data does not\n"
    "have are reported, and the model is checked against every page that names it (animation\n"
    "ranges, batteries, weapons, sounds, detail models). Exit status 0 without errors, 1 with\n"
    "at least one.\n";

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

void ModelFindingJson(JsonWriter& j, const Finding& f) {
    auto index = [&j](const char* key, int value) {
        if (value < 0) {
            j.key(key).null();
        } else {
            j.field(key, value);
        }
    };
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

void TableFindingJson(JsonWriter& j, const TableFinding& f) {
    j.beginObject().field("severity", SeverityName(f.Level)).field("code", f.Code);
    j.field("page", f.Where).field("message", f.Message).endObject();
}

int Report(const std::vector<Finding>& model, const std::vector<TableFinding>& pages, bool json,
           const char* what, std::ostream& out) {
    bool errors = HasErrors(model);
    for (const TableFinding& f : pages)
        errors = errors || f.Level == Severity::Error;
    if (json) {
        JsonWriter j;
        j.beginObject().key("findings").beginArray();
        for (const Finding& f : model)
            ModelFindingJson(j, f);
        for (const TableFinding& f : pages)
            TableFindingJson(j, f);
        j.endArray().endObject();
        out << j.str() << "\n";
    } else if (model.empty() && pages.empty()) {
        out << "No findings: the game takes this " << what << " as it is.\n";
    } else {
        for (const Finding& f : model)
            out << SeverityName(f.Level) << " " << f.Code << ": " << f.Message << "\n";
        for (const TableFinding& f : pages) {
            out << SeverityName(f.Level) << " " << f.Code << ": "
                << (f.Where.empty() ? "" : f.Where + ": ") << f.Message << "\n";
        }
    }
    return errors ? 1 : 0;
}

bool IsArchive(const std::vector<std::uint8_t>& bytes) {
    return bytes.size() >= 4 && std::equal(bytes.begin(), bytes.begin() + 4, "HOG2");
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
    Settings settings;
    if (const int status = ResolveGameData(gameData, settings, err)) return status;
    GameData game;
    std::vector<NamedTable> gameTables;
    if (NamesGameData(settings)) {
        ReadGameData(settings, game, err);
        std::vector<std::string> skipped;
        gameTables = ReadGameTables(game.Hog, settings, skipped);
        for (const std::string& s : skipped)
            err << "Note: " << s << "\n";
    }

    const bool table = EqualsIgnoringCase(std::filesystem::path(file).extension().string(), ".gam");
    const auto head = ReadFileBytes(file);
    if (table || (head && IsArchive(*head))) {
        if (!head) {
            err << "Cannot open " << file << "\n";
            return kExitNoInput;
        }
        if (!table) return Report({}, CheckArchive(file, *head, gameTables), json, "archive", out);
        std::string error;
        auto pages = ReadGamPages(*head, error);
        if (!pages) {
            err << file << ": " << error << "\n";
            return kExitRefused;
        }
        const bool addOn =
            !EqualsIgnoringCase(std::filesystem::path(file).filename().string(), "table.gam");
        return Report({}, CheckTable(*pages, addOn, gameTables), json, "table", out);
    }

    ModelData model;
    if (const int status = LoadModelFile(file, model, err)) return status;
    std::optional<std::vector<bool>> resolved;
    std::vector<TableFinding> pageFindings;
    if (NamesGameData(settings)) {
        NoUploader uploader;
        LoadedTextures loaded;
        LoadModelTextures(model, file, game, settings, MakeMissingTexture(1), uploader, loaded,
                          DecodePictureFile);
        resolved = FoundInGameData(loaded);
        const std::string modelFile =
            Cp1252FromUtf8(std::filesystem::path(file).filename().string());
        pageFindings = CheckModelPages(model, modelFile, gameTables, [&game](const std::string& m) {
            for (const HogModelEntry& e : game.Hog.Models) {
                if (EqualsIgnoringCase(EntryName(e.Name), m)) return true;
            }
            return false;
        });
    }
    return Report(CheckModel(model, resolved ? &*resolved : nullptr), pageFindings, json, "model",
                  out);
}

}  // namespace mw
