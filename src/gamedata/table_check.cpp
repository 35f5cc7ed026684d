#include "gamedata/table_check.h"

#include <map>

#include "gamedata/file_names.h"
#include "gamedata/gam_fields.h"
#include "gamedata/game_object.h"
#include "gamedata/hog.h"
#include "gamedata/hog_writer.h"
#include "gamedata/ogf.h"
#include "gamedata/table_file.h"
#include "model/text_codec.h"

namespace mw {
namespace {

constexpr std::size_t kPageString = 34;
constexpr std::size_t kModuleName = 31;
constexpr std::size_t kDescription = 1023;
constexpr std::size_t kBitmapName = 33;
constexpr std::size_t kAddOnPages = 1000;

// Every text field of a record with its dotted name.
class Texts final : public FieldVisitor {
  public:
    std::vector<std::pair<std::string, std::string>> Found;

    void BeginGroup(std::string_view key) override { path_.emplace_back(key); }
    void EndGroup() override { path_.pop_back(); }
    void BeginList(std::string_view key) override { path_.emplace_back(key); }
    void EndList() override { path_.pop_back(); }
    void BeginItem(int index) override { path_.push_back(std::to_string(index)); }
    void EndItem() override { path_.pop_back(); }
    void Byte(std::string_view, std::uint8_t&) override {}
    void Short(std::string_view, std::int16_t&, bool) override {}
    void UShort(std::string_view, std::uint16_t&, bool) override {}
    void Int(std::string_view, std::int32_t&) override {}
    void UInt(std::string_view, std::uint32_t&) override {}
    void Float(std::string_view, float&) override {}
    void Flag(std::string_view, bool&) override {}
    bool Count(std::string_view, std::size_t&, std::size_t, std::size_t) override { return true; }
    void Text(std::string_view key, std::string& v) override {
        std::string full;
        for (const std::string& p : path_) {
            if (!p.empty()) full += p + ".";
        }
        Found.emplace_back(full + std::string(key), v);
    }

  private:
    std::vector<std::string> path_;
};

std::vector<std::pair<std::string, std::string>> TextFields(const TablePage& page) {
    Texts texts;
    PageRecord copy = page.Record();
    VisitRecord(copy, [&](auto& r) {
        if constexpr (!std::is_same_v<std::decay_t<decltype(r)>, std::monostate>) {
            VisitFields(r, texts);
        }
    });
    return std::move(texts.Found);
}

void Add(std::vector<TableFinding>& out, Severity level, std::string code, std::string where,
         std::string message) {
    out.push_back({level, std::move(code), std::move(where), std::move(message)});
}

bool IsGamePowerup(std::span<const NamedTable> game, const std::string& name) {
    for (const NamedTable& t : game) {
        for (const TablePage& p : t.Table.Pages) {
            const auto* g = RecordAs<GenericRecord>(p.Record());
            if (g != nullptr && g->Type == kObjectPowerup && EqualsIgnoringCase(g->Name, name))
                return true;
        }
    }
    return false;
}

void CheckTexts(const TablePage& page, const std::string& where, std::vector<TableFinding>& out) {
    for (const auto& [field, text] : TextFields(page)) {
        const bool module = field == "module";
        const std::size_t most = module                   ? kModuleName
                                 : field == "description" ? kDescription
                                                          : kPageString;
        if (text.size() > most) {
            Add(out, Severity::Error, "page-string-too-long", where,
                "The " + field + " \"" + Utf8From1252(text) + "\" is longer than the " +
                    std::to_string(most) + " characters the game keeps; it would read \"" +
                    Utf8From1252(text.substr(0, most)) + "\".");
        }
        const bool bitmap = page.Type == 1 && (field == "bitmap" || field == "destroy_bitmap");
        if (bitmap && text.size() > kBitmapName) {
            Add(out, Severity::Error, "bitmap-name-too-long", where,
                "The bitmap name \"" + Utf8From1252(text) + "\" is longer than the " +
                    std::to_string(kBitmapName) + " characters the game loads a bitmap by.");
        }
    }
}

void CheckModels(const TablePage& page, const std::string& where, std::vector<TableFinding>& out) {
    for (const std::string& model : PageModels(page)) {
        const bool oof =
            model.size() > 4 && EqualsIgnoringCase(model.substr(model.size() - 4), ".oof");
        // A stem over the 30 characters the game keeps makes the name longer than a page
        // string too, which the text check reports.
        if (!oof) {
            Add(out, Severity::Error, "model-name-not-oof", where,
                "The model \"" + Utf8From1252(model) +
                    "\" is no .oof name; the game loads models only by their .oof name.");
        }
    }
}

}  // namespace

std::string PageLabel(const TablePage& page) {
    return std::string(PageKindName(page.Type)) + " \"" + Utf8From1252(page.Name()) + "\"";
}

std::vector<TableFinding> CheckTable(const GamTable& table, bool addOn,
                                     std::span<const NamedTable> gamePages) {
    std::vector<TableFinding> out;
    if (addOn && table.Pages.size() > kAddOnPages) {
        Add(out, Severity::Error, "too-many-pages", "",
            "The table has " + std::to_string(table.Pages.size()) +
                " pages; the game takes at most " + std::to_string(kAddOnPages) +
                " from a mission's table.");
    }
    std::map<std::pair<std::uint8_t, std::string>, std::size_t> seen;
    for (std::size_t i = 0; i < table.Pages.size(); ++i) {
        const TablePage& page = table.Pages[i];
        const std::string where = PageLabel(page) + " (page " + std::to_string(i + 1) + ")";
        if (page.Type == 3 || page.Type == 4) {
            Add(out, Severity::Error, "page-type-not-read", where,
                std::string("The game no longer reads ") + PageKindName(page.Type) +
                    " pages and stops on this one (\"Your local table file is invalid\").");
            continue;
        }
        if (page.Type == 0 || page.Type > 10) {
            Add(out, Severity::Error, "page-type-not-read", where,
                "Page type " + std::to_string(page.Type) +
                    " is unknown to the game; it stops reading the table there.");
            continue;
        }
        if (const std::size_t extra = page.ExtraBytes(); extra > 0) {
            Add(out, Severity::Error, "page-length", where,
                "The page holds " + std::to_string(extra) +
                    " bytes after its fields; the game reads the next page's type from them.");
        }
        if (page.Name().empty() && !std::holds_alternative<std::monostate>(page.Record())) {
            Add(out, Severity::Error, "page-without-name", where, "The page has no name.");
        }
        CheckTexts(page, where, out);
        CheckModels(page, where, out);
        if (!page.Name().empty()) {
            const auto key = std::make_pair(page.Type, AsciiLower(page.Name()));
            if (const auto [at, added] = seen.emplace(key, i); !added) {
                Add(out, Severity::Error, "page-twice", where,
                    "Page " + std::to_string(at->second + 1) +
                        " has this name too; the game stops with \"Redundant addon page\".");
            }
        }
        if (const auto* g = RecordAs<GenericRecord>(page.Record())) {
            if (!g->Script.empty() || !g->Module.empty() || !g->ScriptOverride.empty()) {
                Add(out, Severity::Warning, "page-script", where,
                    "The page names a script or module; the open-source game no longer runs "
                    "scripts from missions.");
            }
            if (g->Type == kObjectPowerup && !gamePages.empty() &&
                !IsGamePowerup(gamePages, g->Name)) {
                Add(out, Severity::Warning, "new-powerup", where,
                    "The game data has no powerup of this name; its pickup does nothing, since "
                    "the game chooses what a pickup does by its name.");
            }
        }
        if (const auto* d = RecordAs<DoorRecord>(page.Record()); d && !d->Module.empty()) {
            Add(out, Severity::Warning, "page-script", where,
                "The door names a module; the open-source game no longer runs scripts from "
                "missions.");
        }
    }
    return out;
}

std::vector<TableFinding> CheckArchive(const std::filesystem::path& path,
                                       std::span<const std::uint8_t> bytes,
                                       std::span<const NamedTable> gamePages) {
    std::vector<TableFinding> out;
    std::vector<HogDirectoryEntry> entries;
    if (ReadHogEntries(bytes, entries) != HogStatus::Ok) {
        Add(out, Severity::Error, "archive-damaged", "", "The archive's directory cannot be read.");
        return out;
    }
    std::vector<std::string> names;
    for (const HogDirectoryEntry& e : entries)
        names.push_back(e.Name);
    if (const int at = FirstOutOfOrder(names); at >= 0) {
        Add(out, Severity::Error, "archive-order",
            Utf8From1252(names[static_cast<std::size_t>(at)]),
            "The directory is not in the game's order (ASCII letters without regard to case): \"" +
                Utf8From1252(names[static_cast<std::size_t>(at)]) + "\" stands after \"" +
                Utf8From1252(names[static_cast<std::size_t>(at) - 1]) +
                "\", so the game's search may not find files.");
    }
    const bool mission = EqualsIgnoringCase(path.extension().string(), ".mn3");
    const std::string wanted = MissionTableName(path);
    bool hasWanted = false;
    for (const HogDirectoryEntry& e : entries) {
        const std::string where = Utf8From1252(e.Name);
        if (e.Offset > bytes.size() || e.Length > bytes.size() - e.Offset) {
            Add(out, Severity::Error, "archive-damaged", where, "The entry runs past the archive.");
            continue;
        }
        const auto data = bytes.subspan(e.Offset, e.Length);
        const std::string_view kind = HogEntryKind(e.Name);
        if (EqualsIgnoringCase(e.Name, wanted)) hasWanted = true;
        if (kind == "table") {
            if (mission && !EqualsIgnoringCase(e.Name, wanted)) {
                Add(out, Severity::Error, "table-name", where,
                    "The game loads " + Utf8From1252(wanted) + " from this mission, not " + where +
                        ".");
            }
            std::string error;
            if (auto table = ReadGamPages(data, error)) {
                for (TableFinding& f :
                     CheckTable(*table, !EqualsIgnoringCase(e.Name, "table.gam"), gamePages)) {
                    f.Where = where + ": " + f.Where;
                    out.push_back(std::move(f));
                }
            } else {
                Add(out, Severity::Error, "table-damaged", where, error);
            }
        }
        if ((kind == "texture" || kind == "animation") && e.Name.size() > kBitmapName) {
            Add(out, Severity::Error, "bitmap-name-too-long", where,
                "The image's name is longer than the 33 characters the game loads a bitmap by.");
        }
        if (kind == "texture") {
            clsOGF ogf;
            ByteReader r(data);
            const OgfStatus status = ogf.ReadOGF(r);
            if (status != OgfStatus::Ok) {
                Add(out, Severity::Error, "image-unreadable", where,
                    "The game cannot read this image (its type, depth or data).");
            } else if (!ogf.Image.GameReadsHeader) {
                Add(out, Severity::Error, "image-header", where,
                    "The image's header has a name and mip count, which the game does not read "
                    "for type " +
                        std::to_string(ogf.Image.Type) + "; it reads the pixels wrong.");
            }
        }
    }
    if (mission && !hasWanted) {
        bool anyTable = false;
        for (const HogDirectoryEntry& e : entries)
            anyTable = anyTable || std::string_view(HogEntryKind(e.Name)) == "table";
        if (!anyTable) {
            Add(out, Severity::Warning, "no-table", "",
                "The mission has no table " + Utf8From1252(wanted) +
                    "; its textures and objects need pages there.");
        }
    }
    return out;
}

std::vector<PageRef> PagesNamingModel(const std::vector<NamedTable>& tables,
                                      const std::string& modelFile) {
    std::vector<PageRef> refs;
    for (std::size_t t = 0; t < tables.size(); ++t) {
        const auto& pages = tables[t].Table.Pages;
        for (std::size_t p = 0; p < pages.size(); ++p) {
            for (const std::string& m : PageModels(pages[p])) {
                if (EqualsIgnoringCase(m, modelFile)) {
                    refs.push_back({t, p});
                    break;
                }
            }
        }
    }
    return refs;
}

}  // namespace mw
