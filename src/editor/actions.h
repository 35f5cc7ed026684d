// The main window's menus and tool bar: every item with its caption, shortcut, tool tip and
// icon, what it does, and when it is enabled. Items carry their names as object names
// ("mnuFileSaveOOF", tool bar buttons by key), so tests and assistive tools find them.
#pragma once

#include <QKeySequence>
#include <QObject>
#include <QString>
#include <QStringList>
#include <array>
#include <functional>
#include <map>
#include <vector>

#include "gamedata/settings.h"
#include "gamedata/texture_loader.h"
#include "view/view_state.h"

class QAction;
class QComboBox;
class QMainWindow;
class QMenu;
class QToolBar;

namespace mw {

class Document;
class FileCommands;
class Prompts;

class MainActions : public QObject {
    Q_OBJECT
  public:
    MainActions(QMainWindow& window, Document& doc, FileCommands& files, Settings& settings,
                GameData& game, Prompts& prompts);

    QAction* action(const QString& name) const;
    QMenu* menu(const QString& name) const;
    QToolBar& toolBar() { return *toolBar_; }
    QComboBox& hogList() { return *cboHOG_; }

    // Fills the archive model list from the archive index.
    void PopulateHOGlist();
    // Rebuilds the recent-path items from the settings.
    void FillRecentMenu();
    // Sets the enabling of every menu and tool bar item for the model and the selection.
    void UpdateEnabling();
    void UpdateEditEnabling();
    void UpdateFileEnabling();

    // Sets the Edit menu's enabling and pops it up (the tree's context menu).
    void PopupEditMenu(const QPoint& globalPos);

    // Runs "Scale Model..." with the percentage a dialog gave (100 does nothing).
    void ScaleBy(float percent);

  signals:
    void helpRequested();
    void aboutRequested();
    void preferencesRequested();
    void importP3DRequested();
    void checkRequested();       // Tools > Check Model...
    void gameObjectRequested();  // Tools > Game Object...
    void testInGameRequested();  // Tools > Test in Game

  private:
    QAction* Add(QMenu* menu, const char* name, const QString& caption,
                 const QKeySequence& shortcut = {});
    // Items of which one is checked ("NAME_0", "NAME_1", ...); `chosen` gets the index.
    std::vector<QAction*> AddChoices(QMenu* menu, const QString& name, const QStringList& captions,
                                     const std::function<void(int)>& chosen);
    // A display option switched through the document; checked as the document has it.
    QAction* AddToggle(QMenu* menu, const char* name, const QString& caption,
                       bool DisplaySettings::*flag);
    QAction* AddButton(const char* key, const QString& tip, bool checkable);
    void BuildFileMenu();
    void BuildEditMenu();
    void BuildToolsMenu();
    void BuildModeMenu();
    void BuildAnimationMenu();
    void BuildDisplayMenu();
    void BuildHelpMenu();
    void BuildToolBar();
    void SyncViewChecks();
    void ScaleModel();
    void connectSignals();

    QMainWindow& window_;
    Document& doc_;
    FileCommands& files_;
    Settings& settings_;
    GameData& game_;
    Prompts& prompts_;
    std::map<QString, QAction*> actions_;
    std::map<QString, QMenu*> menus_;
    std::array<QAction*, 9> recent_{};
    QAction* recentSeparator_ = nullptr;
    std::array<QAction*, 4> modeItems_{};
    std::array<QAction*, 4> typeItems_{};
    std::array<QAction*, 4> modeButtons_{};
    std::array<QAction*, 4> typeButtons_{};
    QToolBar* toolBar_ = nullptr;
    QComboBox* cboHOG_ = nullptr;
};

}  // namespace mw
