// A page's fields by name: as JSON (keys named after what the fields mean, texts in UTF-8),
// and changed one at a time by a dotted path as the JSON names it
// ("animation.standing.idle.to", "batteries.0.weapons.2", "size").
#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "gamedata/gam_table.h"

namespace mw {

// {"kind", "version", "name", ...every field...}; a page kept as bytes gives its kind, type
// byte and length only.
nlohmann::ordered_json PageJson(const TablePage& page);

// Sets one field from text (numbers as decimal or 0x hex, texts in UTF-8, true/false).
// On success the page is written anew in the current version; otherwise the message says why
// and the page is unchanged.
std::string SetPageField(TablePage& page, std::string_view path, std::string_view value);

}  // namespace mw
