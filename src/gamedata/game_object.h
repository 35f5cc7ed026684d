// Game objects made from existing pages: a generic, ship or weapon page copied under a new
// name with new model names, as a mission adds a robot, powerup or ship, or replaces one.
#pragma once

#include <string>

#include "gamedata/gam_table.h"

namespace mw {

struct ObjectModels {
    std::string Model;   // the main model (for a weapon: its fire image)
    std::string Medium;  // detail models; empty keeps none
    std::string Low;
};

// Why a name cannot stand on a page, or "" (Windows-1252 bytes, at most 34 characters).
std::string PageNameProblem(const std::string& name);
// Why a model file name cannot be loaded by the game, or "" (an .oof name with a stem of at
// most 30 characters).
std::string ModelNameProblem(const std::string& name);

// A copy of `like` (a generic, ship or weapon page) named `name` with the given models, in
// the current version. "" and `made` set, or the reason nothing was made.
std::string CopyObjectPage(const TablePage& like, const std::string& name,
                           const ObjectModels& models, TablePage& made);

// The model file names a page names (model, detail models, dying model, weapon fire model).
std::vector<std::string> PageModels(const TablePage& page);

}  // namespace mw
