// meshwright-cli gam: a GAM table's pages listed with every field, and changed.
#include <ostream>

#include "cli/cli.h"
#include "cli/gam_edit.h"
#include "cli/json_writer.h"
#include "gamedata/gam_json.h"
#include "gamedata/table_file.h"
#include "model/text_codec.h"

namespace mw {
namespace {

constexpr const char* kGamUsage =
    "Usage: meshwright-cli gam dump SOURCE [--json] [--page NAME]\n"
    "       meshwright-cli gam set TABLE OUT PAGE FIELD=VALUE...\n"
    "       meshwright-cli gam add-object TABLE OUT --like PAGE [--from SOURCE] --name NAME\n"
    "                                     --model MODEL.oof [--medium M.oof] [--low L.oof]\n"
    "       meshwright-cli gam remove TABLE OUT PAGE...\n"
    "       meshwright-cli gam merge OUT TABLE...\n"
    "A GAM table is a .gam file, or the table inside an archive (for NAME.mn3 the NAME.gam the\n"
    "game loads). dump lists every page with every field (FIELD paths as dump names them:\n"
    "size, animation.standing.idle.to, batteries.0.weapons.1 ...). set changes fields of one\n"
    "page; add-object copies a generic, ship or weapon page (from TABLE, else from SOURCE)\n"
    "under a new name with new model names; remove takes pages out; merge joins tables. An\n"
    "archive is written back with only its table changed. Nothing is written on a refusal\n"
    "(exit status 65).\n";

void WriteJsonValue(JsonWriter& j, const nlohmann::ordered_json& v) {
    switch (v.type()) {
        case nlohmann::ordered_json::value_t::object:
            j.beginObject();
            for (const auto& [key, item] : v.items()) {
                j.key(key);
                WriteJsonValue(j, item);
            }
            j.endObject();
            break;
        case nlohmann::ordered_json::value_t::array:
            j.beginArray();
            for (const auto& item : v)
                WriteJsonValue(j, item);
            j.endArray();
            break;
        case nlohmann::ordered_json::value_t::string:
            j.value(v.get_ref<const std::string&>());
            break;
        case nlohmann::ordered_json::value_t::boolean:
            j.value(v.get<bool>());
            break;
        case nlohmann::ordered_json::value_t::number_float:
            j.value(static_cast<float>(v.get<double>()));  // every float field is 32-bit
            break;
        case nlohmann::ordered_json::value_t::number_integer:
        case nlohmann::ordered_json::value_t::number_unsigned:
            j.value(v.get<std::int64_t>());
            break;
        default:
            j.null();
    }
}

// "path = value" for every field, for people.
void WriteFlat(const nlohmann::ordered_json& v, const std::string& path, std::ostream& out) {
    if (v.is_object() || v.is_array()) {
        std::size_t i = 0;
        for (const auto& [key, item] : v.items()) {
            const std::string part = v.is_array() ? std::to_string(i++) : key;
            WriteFlat(item, path.empty() ? part : path + "." + part, out);
        }
        return;
    }
    JsonWriter j;
    WriteJsonValue(j, v);
    out << "  " << path << " = " << j.str() << "\n";
}

int Dump(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    std::string source, only;
    bool json = false;
    for (std::size_t i = 1; i < args.size(); ++i) {
        if (args[i] == "--json") {
            json = true;
        } else if (args[i] == "--page" && i + 1 < args.size()) {
            only = args[++i];
        } else if (!args[i].starts_with("-") && source.empty()) {
            source = args[i];
        } else {
            err << kGamUsage;
            return kExitUsage;
        }
    }
    if (source.empty()) {
        err << kGamUsage;
        return kExitUsage;
    }
    TableFile file;
    if (const int status = LoadTable(source, file, err)) return status;
    const std::string wanted = Cp1252FromUtf8(only);
    JsonWriter j;
    j.beginObject().key("pages").beginArray();
    int shown = 0;
    for (const TablePage& page : file.Table.Pages) {
        if (!only.empty() && !EqualsIgnoringCase1252(page.Name(), wanted)) continue;
        ++shown;
        const nlohmann::ordered_json fields = PageJson(page);
        if (json) {
            WriteJsonValue(j, fields);
            continue;
        }
        out << PageKindName(page.Type) << " \"" << Utf8From1252(page.Name()) << "\" ("
            << page.Bytes.size() << " bytes)\n";
        WriteFlat(fields, "", out);
    }
    if (!only.empty() && shown == 0) {
        err << "No page \"" << only << "\" in " << source << ".\n";
        return kExitRefused;
    }
    if (json) out << j.endArray().endObject().str() << "\n";
    return 0;
}

}  // namespace

int GamCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kGamUsage;
        return 0;
    }
    if (args.empty()) {
        err << kGamUsage;
        return kExitUsage;
    }
    const std::string& sub = args[0];
    int status = -1;
    if (sub == "dump") status = Dump(args, out, err);
    if (sub == "set") status = GamSet(args, out, err);
    if (sub == "add-object") status = GamAddObject(args, out, err);
    if (sub == "remove") status = GamRemove(args, out, err);
    if (sub == "merge") status = GamMerge(args, out, err);
    if (status == kExitUsage || status == -1) {
        err << kGamUsage;
        return kExitUsage;
    }
    return status;
}

}  // namespace mw
