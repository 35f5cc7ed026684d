// What Tools > Test in Game asks and checks before the game starts: a game program and a
// mission archive in the preferences, the model saved, and the mission's copy of the model
// the same as the saved file.
#pragma once

#include <optional>

#include "convert/game_run.h"

class QWidget;

namespace mw {

class Document;
class FileCommands;
class Prompts;
struct Settings;

// The run to start, or nullopt when it must not start (the user was told why, or cancelled).
std::optional<PlaySetup> PrepareTestInGame(Document& doc, FileCommands& files,
                                           const Settings& settings, Prompts& prompts,
                                           QWidget* parent);

}  // namespace mw
