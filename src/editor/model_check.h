// The game-limits check as the editor runs it: on the document's model, with the textures
// the viewport resolved when game data is named.
#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "model/game_check.h"

namespace mw {

class Document;
struct LoadedTextures;
struct Settings;

using ModelCheck = std::function<std::vector<Finding>()>;

// A check of the document's model; `textures` (may be null) tells which textures resolved,
// and counts only when the settings name some game data.
ModelCheck DocumentCheck(const Document& doc, const LoadedTextures* textures,
                         const Settings* settings);

// The question before saving a model with errors; empty when there are none.
QString SaveWithErrorsQuestion(const std::vector<Finding>& findings);

}  // namespace mw
