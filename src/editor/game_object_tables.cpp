#include "editor/game_object_tables.h"

#include <algorithm>
#include <set>

#include "gamedata/file_names.h"
#include "gamedata/gam_json.h"
#include "gamedata/game_object.h"
#include "gamedata/hog.h"
#include "gamedata/hog_writer.h"
#include "gamedata/settings.h"
#include "gamedata/texture_loader.h"
#include "model/text_codec.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

bool SameFile(const fs::path& a, const fs::path& b) {
    std::error_code ec;
    return fs::equivalent(a, b, ec) || a == b;
}

bool IsObjectPage(const TablePage& page) {
    return page.Type == static_cast<std::uint8_t>(PageType::Generic) ||
           page.Type == static_cast<std::uint8_t>(PageType::Ship) ||
           page.Type == static_cast<std::uint8_t>(PageType::Weapon);
}

}  // namespace

void GameObjectTables::Load(const GameData& game, const Settings& settings, const fs::path& mission,
                            const std::string& modelFile) {
    *this = GameObjectTables{};
    modelFile_ = modelFile;
    tables_ = ReadGameTables(game.Hog, settings, skipped_);
    // The mission being edited is shown from its own file, not as game data.
    const fs::path configured = settings.MN3GAMPath;
    if (!mission.empty() && !configured.empty() && SameFile(configured, mission)) {
        const std::string loose = configured.filename().string();
        std::erase_if(tables_, [&](const NamedTable& t) {
            return t.Source == "mission" || t.Source == loose;
        });
    }
    for (const HogModelEntry& e : game.Hog.Models)
        modelsKnown_.push_back(AsciiLower(EntryName(e.Name)));

    missionPath_ = mission;
    if (mission.empty()) return;
    std::string message;
    const TableLoad load = LoadTableFile(mission, mission_, message);
    if (load == TableLoad::Unreadable && AsciiLower(mission.extension().string()) == ".gam" &&
        !fs::exists(mission)) {
        mission_ = TableFile{};  // a new loose table
    } else if (load != TableLoad::Ok && load != TableLoad::NoTable) {
        missionProblem_ = message;  // (an archive without a table gets one on the first save)
        return;
    }
    if (mission_.InArchive) {
        std::vector<HogDirectoryEntry> entries;
        if (ReadHogEntries(mission_.Bytes, entries) == HogStatus::Ok) {
            for (const HogDirectoryEntry& e : entries)
                modelsKnown_.push_back(AsciiLower(e.Name));
        }
    }
    tables_.push_back({mission.filename().string(), std::move(mission_.Table)});
    mission_.Table = {};
}

std::span<const NamedTable> GameObjectTables::GameTables() const {
    return {tables_.data(), tables_.size() - (HasMission() ? 1 : 0)};
}

const GamTable& GameObjectTables::MissionTable() const {
    static const GamTable kNone;
    return HasMission() ? tables_.back().Table : kNone;
}

std::vector<ObjectPageItem> GameObjectTables::Pages() const {
    std::vector<ObjectPageItem> items;
    const std::size_t missionTable = HasMission() ? tables_.size() - 1 : tables_.size();
    for (const PageRef& ref : PagesNamingModel(tables_, modelFile_)) {
        const NamedTable& table = tables_[ref.Table];
        const TablePage& p = table.Table.Pages[ref.Page];
        items.push_back({PageKindName(p.Type), Utf8From1252(p.Name()), table.Source,
                         ref.Table == missionTable});
    }
    std::stable_partition(items.begin(), items.end(),
                          [](const ObjectPageItem& i) { return i.InMission; });
    return items;
}

const TablePage* GameObjectTables::Page(const ObjectPageItem& item) const {
    const std::string name = Cp1252FromUtf8(item.Name);
    if (item.InMission) {
        const int i = FindPage(MissionTable(), name);
        return i < 0 ? nullptr : &MissionTable().Pages[static_cast<std::size_t>(i)];
    }
    for (const NamedTable& t : GameTables()) {
        if (t.Source != item.Source) continue;
        const int i = FindPage(t.Table, name);
        if (i >= 0) return &t.Table.Pages[static_cast<std::size_t>(i)];
    }
    return nullptr;
}

const TablePage* GameObjectTables::FindAnywhere(const std::string& name, bool gameOnly) const {
    // A later table replaces an earlier one's page of the same name.
    const std::span<const NamedTable> tables = gameOnly ? GameTables() : tables_;
    for (auto t = tables.rbegin(); t != tables.rend(); ++t) {
        const int i = FindPage(t->Table, name);
        if (i >= 0) return &t->Table.Pages[static_cast<std::size_t>(i)];
    }
    return nullptr;
}

std::vector<std::string> GameObjectTables::CopyableNames() const {
    std::set<std::string> seen;
    std::vector<std::string> names;
    for (const NamedTable& t : tables_) {
        for (const TablePage& p : t.Table.Pages) {
            if (IsObjectPage(p) && seen.insert(AsciiLower(p.Name())).second)
                names.push_back(Utf8From1252(p.Name()));
        }
    }
    std::sort(names.begin(), names.end(),
              [](const std::string& a, const std::string& b) { return HogNameLess(a, b); });
    return names;
}

std::string GameObjectTables::Change(GamTable changed) {
    undo_.push_back({std::move(Mission()), state_});
    redo_.clear();
    state_ = ++lastState_;
    Mission() = std::move(changed);
    return {};
}

std::string GameObjectTables::Edited(const std::string& page, const std::string& path,
                                     const std::string& value, GamTable& changed) const {
    if (!HasMission()) return "No mission is chosen to hold the page.";
    const int i = FindPage(MissionTable(), Cp1252FromUtf8(page));
    if (i < 0) return "The mission has no page \"" + page + "\".";
    changed = MissionTable();
    TablePage& target = changed.Pages[static_cast<std::size_t>(i)];
    const std::string value1252 = Cp1252FromUtf8(value);
    if (path == "name") {
        if (std::string problem = PageNameProblem(value1252); !problem.empty()) return problem;
        const int other = FindPage(changed, value1252);
        if (other >= 0 && other != i)
            return "The mission already has a page named \"" + value + "\".";
    } else if (path == "model" || path == "medium_model" || path == "low_model") {
        if (!value.empty() || path == "model") {
            if (std::string problem = ModelNameProblem(value1252); !problem.empty()) return problem;
        }
    }
    return SetPageField(target, path, value);
}

std::string GameObjectTables::TryField(const std::string& page, const std::string& path,
                                       const std::string& value) const {
    GamTable changed;
    return Edited(page, path, value, changed);
}

std::string GameObjectTables::SetField(const std::string& page, const std::string& path,
                                       const std::string& value) {
    GamTable changed;
    if (std::string error = Edited(page, path, value, changed); !error.empty()) return error;
    return Change(std::move(changed));
}

std::string GameObjectTables::NewObjectLike(const std::string& like, const std::string& name) {
    if (!HasMission()) return "No mission is chosen to hold the page.";
    const TablePage* source = FindAnywhere(Cp1252FromUtf8(like), false);
    if (source == nullptr || !IsObjectPage(*source))
        return "No generic, ship or weapon page is named \"" + like + "\".";
    const std::string name1252 = Cp1252FromUtf8(name);
    if (FindPage(Mission(), name1252) >= 0)
        return "The mission already has a page named \"" + name + "\".";
    if (FindAnywhere(name1252, true) != nullptr)
        return "The game has a page named \"" + name +
               "\"; a page of that name replaces it (use Replace...).";
    TablePage made;
    if (std::string error = CopyObjectPage(*source, name1252, {modelFile_, {}, {}}, made);
        !error.empty()) {
        return error;
    }
    GamTable changed = Mission();
    changed.Pages.push_back(std::move(made));
    return Change(std::move(changed));
}

std::string GameObjectTables::Replace(const std::string& name) {
    if (!HasMission()) return "No mission is chosen to hold the page.";
    const TablePage* source = FindAnywhere(Cp1252FromUtf8(name), true);
    if (source == nullptr || !IsObjectPage(*source))
        return "The game has no generic, ship or weapon page named \"" + name + "\".";
    if (FindPage(Mission(), source->Name()) >= 0)
        return "The mission already has a page named \"" + name + "\".";
    TablePage made;
    if (std::string error = CopyObjectPage(*source, source->Name(), {modelFile_, {}, {}}, made);
        !error.empty()) {
        return error;
    }
    GamTable changed = Mission();
    changed.Pages.push_back(std::move(made));
    return Change(std::move(changed));
}

void GameObjectTables::Undo() {
    if (undo_.empty()) return;
    redo_.push_back({std::move(Mission()), state_});
    Mission() = std::move(undo_.back().Table);
    state_ = undo_.back().Number;
    undo_.pop_back();
}

void GameObjectTables::Redo() {
    if (redo_.empty()) return;
    undo_.push_back({std::move(Mission()), state_});
    Mission() = std::move(redo_.back().Table);
    state_ = redo_.back().Number;
    redo_.pop_back();
}

bool GameObjectTables::IsModified() const {
    return HasMission() && state_ != savedState_;
}

std::string GameObjectTables::Save() {
    if (!HasMission()) return "No mission is chosen to hold the page.";
    if (std::string error = SaveTableFile(mission_, Mission(), missionPath_); !error.empty())
        return error;
    // The file as now written is the one the next save replaces the table entry of.
    TableFile reread;
    std::string message;
    if (LoadTableFile(missionPath_, reread, message) == TableLoad::Ok) {
        reread.Table = {};
        mission_ = std::move(reread);
    }
    savedState_ = state_;
    return {};
}

std::vector<TableFinding> GameObjectTables::Findings(const ObjectPageItem& item,
                                                     const ModelData& model) const {
    const TablePage* page = Page(item);
    if (page == nullptr) return {};
    const std::vector<std::string>& known = modelsKnown_;
    const std::string label = PageLabel(*page);
    const std::string where = label + " in " + item.Source;
    std::vector<TableFinding> out;
    for (TableFinding& f :
         CheckModelPages(model, modelFile_, tables_, [&known](const std::string& m) {
             return std::find(known.begin(), known.end(), AsciiLower(m)) != known.end();
         })) {
        if (f.Where == where) out.push_back(std::move(f));
    }
    if (item.InMission) {
        for (TableFinding& f : CheckTable(MissionTable(), true, GameTables())) {
            if (f.Where == label) out.push_back(std::move(f));
        }
    }
    return out;
}

}  // namespace mw
