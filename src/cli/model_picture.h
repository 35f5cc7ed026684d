// What the drawing commands (render, thumbnail, sheet) share: the GUI application the
// renderer needs, the game data the editor's settings name, and a model made ready to draw.
#pragma once

#include <QGuiApplication>
#include <QImage>
#include <memory>
#include <string>

#include "cli/game_data_options.h"
#include "gamedata/texture_loader.h"
#include "view/offscreen.h"

namespace mw {

// The GUI application the renderer needs, unless there is one; without a display Qt's
// offscreen platform (the drawing itself then goes through EGL).
std::unique_ptr<QGuiApplication> MakeGuiApplication();

// The settings the options name; with no game-data option at all, the editor's own
// settings file (beside the program or in the user's configuration folder) when there is
// one, so a thumbnailer sees the game data the editor uses.
int ResolveGameDataOrEditorSettings(const GameDataOptions& options, Settings& settings,
                                    std::ostream& err);

// What a drawing command works with: the GUI application, the offscreen view and the game
// data the settings name.
struct DrawingSession {
    std::unique_ptr<QGuiApplication> app;
    OffscreenView view;
    GameData data;
    bool gameData = false;

    // Makes the view (width x height) and reads the game data; false with the error reported
    // on `err`.
    bool Start(int width, int height, Settings& settings, std::ostream& err);
    GameData* gameDataOrNull() { return gameData ? &data : nullptr; }
};

// Uploads the model's textures (through the game data when `data` is given, else the
// placeholder), compiles its lists and loads the glow texture.
LoadedTextures PrepareModel(OffscreenView& view, ModelData& model, const std::string& path,
                            GameData* data, const Settings& settings);

// A picture of a model alone: the frame fitted to the model, no point glyphs or axes.
FrameInput ModelOnlyFrame(const ModelData& model);

// The picture's visible part (alpha above 0) scaled to fit `size` x `size` less a margin,
// centred on a transparent square.
QImage FitIntoSquare(const QImage& picture, int size);

}  // namespace mw
