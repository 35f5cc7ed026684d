// frmOOF, the main window: lays out the left column (tree, tabs, panels), the viewport and
// the animation strip, owns the document, the menus and the file commands, and keeps its
// title in line with the model's file and unsaved changes.
#pragma once

#include <QMainWindow>
#include <QPixmap>
#include <functional>
#include <memory>

#include "gamedata/settings.h"
#include "gamedata/texture_loader.h"
#include "model/oof.h"

class QGroupBox;

namespace mw {

class AnimationStrip;
class CheckDialog;
class KeyMenu;
class Document;
class FileCommands;
class MainActions;
class ModelTree;
class PanelHost;
class Prompts;
class P3DImport;
class Viewport;
class frmPreferences;

class frmOOF : public QMainWindow {
    Q_OBJECT
  public:
    // `prompts` answers the window's questions (Qt's dialogs when null).
    frmOOF(clsOOF& oof, GameData& game, Settings& settings, const QPixmap& logo = {},
           Prompts* prompts = nullptr, QWidget* parent = nullptr);
    ~frmOOF() override;

    Document& document() { return *doc_; }
    Viewport& viewport() { return *viewport_; }
    PanelHost& panels() { return *panels_; }
    ModelTree& tree() { return *tree_; }
    MainActions& actions() { return *actions_; }
    FileCommands& files() { return *files_; }
    Prompts& prompts() { return *prompts_; }
    QGroupBox& animationStrip() { return *fraAnimation_; }
    AnimationStrip& animation() { return *strip_; }
    KeyMenu& keyMenu() { return *keyMenu_; }
    P3DImport& p3dImport() { return *import_; }

    // Opens a file as the Open command does with that file chosen.
    bool LoadModel(const QString& path);

    void ShowHelp();
    void ShowAbout();
    // Tools > Check Model...: the findings, kept open beside the window.
    void ShowCheck();

    // File > Preferences...: the dialog, then whatever its changes call for.
    void ShowPreferences();
    // After the preferences dialog closed: Import P3D's enabling, the background picture,
    // and, when a game-data path changed, the game data and (if asked) the model's textures.
    void ApplyPreferences(bool pathsChanged, bool backgroundChanged);
    // Runs the preferences dialog modally (tests set their own, which drives the dialog).
    using PreferencesRunner = std::function<void(frmPreferences&)>;
    void SetPreferencesRunner(PreferencesRunner run) { runPreferences_ = std::move(run); }

    // Reads the game's archives and tables behind the progress bar and fills the archive
    // model list.
    void ReadGameData();

    // Where the program lives (for the manual).
    void SetProgramDir(const QString& dir) { programDir_ = dir; }

    // Writes the view options back into the settings.
    void StoreSettings();

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
    Viewport* viewport_ = nullptr;
    PanelHost* panels_ = nullptr;
    ModelTree* tree_ = nullptr;
    QGroupBox* fraAnimation_ = nullptr;
    AnimationStrip* strip_ = nullptr;
    KeyMenu* keyMenu_ = nullptr;
    FileCommands* files_ = nullptr;
    P3DImport* import_ = nullptr;
    PreferencesRunner runPreferences_;
    MainActions* actions_ = nullptr;
    QWidget* help_ = nullptr;
    CheckDialog* check_ = nullptr;
};

}  // namespace mw
