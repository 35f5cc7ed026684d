// Checks of tables and archives against what the game's loaders take: page strings and
// names it cuts or refuses, pages it stops on, the table a mission archive must hold, the
// order of an archive's directory, image headers it does not read. And a model checked
// against the pages that name it: animation ranges, batteries, weapons, sounds, detail models.
#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "gamedata/gam_table.h"
#include "model/game_check.h"
#include "model/model_data.h"

namespace mw {

struct TableFinding {
    Severity Level = Severity::Error;
    std::string Code;
    std::string Where;  // the page ("generic \"GuideBot\"") or archive entry concerned
    std::string Message;
};

// A table with where it comes from ("d3.hog", "mission", a file name).
struct NamedTable {
    std::string Source;
    GamTable Table;
};

// The pages of a table the game would refuse, cut, or stop on. `addOn`: the table is a
// mission's (at most 1000 pages). `gamePages` (may be empty): the game's own tables, to tell
// a new powerup from one the game knows.
std::vector<TableFinding> CheckTable(const GamTable& table, bool addOn,
                                     std::span<const NamedTable> gamePages = {});

// An archive as the game reads it: its directory order, the table a mission archive must
// hold (`path` names it), images whose headers the game does not read, and its table.
std::vector<TableFinding> CheckArchive(const std::filesystem::path& path,
                                       std::span<const std::uint8_t> bytes,
                                       std::span<const NamedTable> gamePages = {});

// The model checked against every page of `tables` that names `modelFile` (ignoring case):
// animation ranges outside its frame range, firing masks and gun points it lacks, weapons and
// sounds no page defines, detail models `hasModel` cannot find.
std::vector<TableFinding> CheckModelPages(const ModelData& model, const std::string& modelFile,
                                          const std::vector<NamedTable>& tables,
                                          const std::function<bool(const std::string&)>& hasModel);

// The rules a page's animation range and firing mask are held to against a model: a range
// of 0 to 0 is unused; any other must lie in the model's frame range, from before to.
bool AnimRangeFits(const AnimRange& range, const ModelData& model);
// The first gun point a firing mask fires that a battery of `guns` gun points lacks, or -1.
int FirstMissingGunPoint(std::uint8_t mask, std::size_t guns);

// Every page of the tables that names the model file (as model, detail, dying or fire model).
struct PageRef {
    std::size_t Table = 0;
    std::size_t Page = 0;
};
std::vector<PageRef> PagesNamingModel(const std::vector<NamedTable>& tables,
                                      const std::string& modelFile);

// "generic \"GuideBot\"", for messages.
std::string PageLabel(const TablePage& page);

}  // namespace mw
