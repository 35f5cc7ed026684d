// The application object: owns the model, the game data, the settings and the main window,
// and runs start-up and shut-down.
#pragma once

#include <memory>
#include <string>

#include "editor/main_window.h"
#include "gamedata/ini_file.h"
#include "gamedata/settings.h"
#include "gamedata/texture_loader.h"
#include "model/oof.h"

namespace mw {

// What must be set before the Qt application exists (the OpenGL surface format).
void PrepareApplication();

class Application {
  public:
    explicit Application(const std::string& programDir);
    ~Application();

    // Reads the settings and the game data and shows the main window. False when the
    // viewport could not get an OpenGL context (the user has been told).
    bool Start();
    // Writes the settings back.
    void Stop();

    frmOOF& window() { return *window_; }
    Settings& settings() { return settings_; }

  private:
    clsIniFile ini_;
    Settings settings_;
    clsOOF oof_;
    GameData game_;
    std::unique_ptr<frmOOF> window_;
};

}  // namespace mw
