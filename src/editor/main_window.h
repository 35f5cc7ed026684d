// frmOOF, the main window: lays out the left column (tree, tabs, panels), the viewport and
// the animation strip, owns the document, the model's textures, playback, the menus and the
// file commands, and keeps its title in line with the model's file and unsaved changes. It
// relays nothing: every view follows the document (or the textures, or playback) itself.
#pragma once

#include <QMainWindow>
#include <QPixmap>
#include <functional>
#include <memory>

#include "gamedata/settings.h"
#include "gamedata/texture_loader.h"
#include "model/oof.h"

namespace mw {

class Autosave;
class CheckDialog;
class Document;
class FileCommands;
class MainActions;
class ModelTextures;
class Playback;
class Prompts;
class Viewport;
class frmPreferences;
class GameObjectDialog;
class GameTestWindow;

class frmOOF : public QMainWindow {
    Q_OBJECT
  public:
    // `prompts` answers the window's questions (Qt's dialogs when null).
    // Recovery copies go to `recoveryFolder` (by default the user's recovery folder).
    frmOOF(clsOOF& oof, GameData& game, Settings& settings, const QPixmap& logo = {},
           Prompts* prompts = nullptr, QWidget* parent = nullptr,
           const QString& recoveryFolder = {});
    ~frmOOF() override;

    Document& document() { return *doc_; }
    Prompts& prompts() { return *prompts_; }
    // True when the viewport has an OpenGL context (checked once at start-up).
    bool ViewportReady() const;

    // Opens a file as the Open command does with that file chosen.
    bool LoadModel(const QString& path);

    void ShowHelp();
    void ShowAbout();
    // Tools > Check Model...: the findings, kept open beside the window.
    void ShowCheck();
    // Tools > Game Object...: the pages that name the model, modal.
    void ShowGameObject();
    // Tools > Test in Game: the mission in the game, in a window that follows the game.
    void ShowTestInGame();

    // File > Preferences...: the dialog, then whatever its changes call for.
    void ShowPreferences();
    // After the preferences dialog closed: the background picture, and, when a game-data path
    // changed, the game data and (if asked) the model's textures.
    void ApplyPreferences(bool pathsChanged, bool backgroundChanged);
    // Runs the preferences dialog modally (tests set their own, which drives the dialog).
    using PreferencesRunner = std::function<void(frmPreferences&)>;
    void SetPreferencesRunner(PreferencesRunner run) { runPreferences_ = std::move(run); }
    // Runs the Game Object dialog (modally unless tests set their own).
    using GameObjectRunner = std::function<void(GameObjectDialog&)>;
    void SetGameObjectRunner(GameObjectRunner run) { runGameObject_ = std::move(run); }
    GameTestWindow* testWindow() { return test_; }
    // Where Test in Game prepares the mission (the user's cache folder unless set).
    void SetTestFolder(const QString& folder) { testFolder_ = folder; }

    // Reads the game's archives and tables behind the progress bar; says gameDataChanged.
    void ReadGameData();
    // The effects that need game data: the glow sprites' texture.
    void LoadEffects();
    // Offers the recovery copies earlier sessions left (in `folder`, by default the user's
    // recovery folder). True when one was recovered.
    bool OfferRecovery(const QString& folder = {});

    // Where the program lives (for the manual).
    void SetProgramDir(const QString& dir) { programDir_ = dir; }

    // Writes the view options back into the settings.
    void StoreSettings();

  signals:
    // The game's archives and tables were read again (the archive list refills itself).
    void gameDataChanged();
    // The preferences dialog closed (what depends on stored paths checks them again).
    void settingsChanged();

  protected:
    void closeEvent(QCloseEvent* e) override;

  private:
    void UpdateTitle();

    std::unique_ptr<Prompts> ownPrompts_;
    Prompts* prompts_;
    std::unique_ptr<Document> doc_;
    Settings& settings_;
    GameData& game_;
    QPixmap logo_;
    QString programDir_;
    QString recoveryFolder_;
    ModelTextures* textures_ = nullptr;
    Autosave* autosave_ = nullptr;
    Playback* playback_ = nullptr;
    Viewport* viewport_ = nullptr;
    FileCommands* files_ = nullptr;
    PreferencesRunner runPreferences_;
    GameObjectRunner runGameObject_;
    GameTestWindow* test_ = nullptr;
    QString testFolder_;
    MainActions* actions_ = nullptr;
    QWidget* help_ = nullptr;
    CheckDialog* check_ = nullptr;
};

}  // namespace mw
