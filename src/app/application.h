// The application object: owns the model, the game data, the settings and the main window,
// and runs start-up and shut-down.
#pragma once

#include <QPixmap>
#include <memory>
#include <string>

#include "editor/main_window.h"
#include "gamedata/ini_file.h"
#include "gamedata/settings.h"
#include "gamedata/texture_loader.h"
#include "model/oof.h"

namespace mw {

class Prompts;

// What must be set before the Qt application exists (the OpenGL surface format).
void PrepareApplication();

class Application {
  public:
    // `prompts` answers the window's questions (Qt's dialogs when null).
    explicit Application(const std::string& programDir, Prompts* prompts = nullptr);
    ~Application();

    // Reads the settings, shows the main window and reads the game data behind the progress
    // dialog. False when the program cannot go on (the user has been told).
    bool Start();
    // Writes the settings back.
    void Stop();

    frmOOF& window() { return *window_; }
    Settings& settings() { return settings_; }
    GameData& game() { return game_; }
    const clsIniFile& ini() const { return ini_; }

  private:
    std::string programDir_;
    Prompts* prompts_;
    clsIniFile ini_;
    Settings settings_;
    clsOOF oof_;
    GameData game_;
    QPixmap logo_;
    std::unique_ptr<frmOOF> window_;
};

}  // namespace mw
