// The game objects that use the open model: the pages of the game's tables and of the
// mission's table that name its file, and the mission's table as it is edited. Game pages
// are read only; a change goes into the mission's table (a copy under a new name, or a page
// of the same name that replaces the game's), with its own undo, and is saved into the
// mission (the table entry of its archive, or a loose .gam) and nowhere else.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "gamedata/table_check.h"
#include "gamedata/table_file.h"

namespace mw {

struct GameData;
struct Settings;

// A page that names the model, as the list shows it.
struct ObjectPageItem {
    std::string Kind;    // "generic", "ship", "weapon", "door"
    std::string Name;    // UTF-8
    std::string Source;  // "d3.hog", "extra13.hog", or the mission's file name
    bool InMission = false;
};

class GameObjectTables {
  public:
    // The tables of the game data (without the mission's) and the mission's table, read from
    // `mission` (an .mn3/.hog or a loose .gam; a .gam that does not exist yet starts empty).
    // `modelFile` is the model's file name as pages name it ("ship.oof").
    void Load(const GameData& game, const Settings& settings, const std::filesystem::path& mission,
              const std::string& modelFile);
    // Why the mission's table cannot be read, or "".
    const std::string& MissionProblem() const { return missionProblem_; }
    const std::vector<std::string>& Skipped() const { return skipped_; }
    const std::filesystem::path& MissionPath() const { return missionPath_; }
    bool HasMission() const { return !missionPath_.empty() && missionProblem_.empty(); }
    const std::string& ModelFile() const { return modelFile_; }

    // Pages naming the model: the mission's first, then the game's.
    std::vector<ObjectPageItem> Pages() const;
    // The page shown for an item (from the mission or the game), or nullptr.
    const TablePage* Page(const ObjectPageItem& item) const;
    // The pages of the game data and the mission that could be copied (generic, ship and
    // weapon pages), by name.
    std::vector<std::string> CopyableNames() const;

    // Sets a field of a mission page ("" or the reason nothing changed).
    std::string SetField(const std::string& page, const std::string& path,
                         const std::string& value);
    // What SetField would say, changing nothing (for a field as it is typed).
    std::string TryField(const std::string& page, const std::string& path,
                         const std::string& value) const;
    // A copy of the page `like` (game or mission) named `name`, with this model as its model
    // (the detail models kept only when they are this model's); "" or why none was made.
    std::string NewObjectLike(const std::string& like, const std::string& name);
    // The game's page `name` copied into the mission under its own name, naming this model.
    std::string Replace(const std::string& name);

    bool CanUndo() const { return !undo_.empty(); }
    bool CanRedo() const { return !redo_.empty(); }
    void Undo();
    void Redo();
    // True while the mission's table has changes that were not saved.
    bool IsModified() const;
    // Writes the mission's table into its file ("" or why nothing was written).
    std::string Save();

    // What the check finds for one page against the model: the model-against-page rules and
    // the table's own rules.
    std::vector<TableFinding> Findings(const ObjectPageItem& item, const ModelData& model) const;

    const GamTable& MissionTable() const;

  private:
    std::string Change(GamTable changed);
    std::string Edited(const std::string& page, const std::string& path, const std::string& value,
                       GamTable& changed) const;
    GamTable& Mission() { return tables_.back().Table; }
    // The game's tables, without the mission's.
    std::span<const NamedTable> GameTables() const;
    const TablePage* FindAnywhere(const std::string& name, bool gameOnly) const;

    // The game's tables in the game's order, then (when there is one) the mission's, whose
    // file `mission_` holds without its table.
    std::vector<NamedTable> tables_;
    std::vector<std::string> skipped_;
    std::filesystem::path missionPath_;
    std::string missionProblem_;
    std::string modelFile_;
    TableFile mission_;
    // Each state of the mission's table gets a number; the saved one's is kept.
    struct State {
        GamTable Table;
        std::uint64_t Number = 0;
    };
    std::uint64_t state_ = 0, savedState_ = 0, lastState_ = 0;
    std::vector<std::string> modelsKnown_;  // model files of the archives, lower case
    std::vector<State> undo_, redo_;
};

}  // namespace mw
