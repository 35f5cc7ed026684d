// Tools > "Game Object...": the pages of the game and of the mission that name the open
// model, one of them shown against the model (GameObjectPage), new objects copied from
// existing pages, game pages replaced in the mission, the edits undone and redone here and
// saved into the mission's table.
#pragma once

#include <QDialog>
#include <functional>

#include "editor/game_object_tables.h"

class QLabel;
class QPushButton;
class QTreeWidget;

namespace mw {

class Document;
class GameObjectPage;
class Prompts;
struct GameData;
struct Settings;

class GameObjectDialog : public QDialog {
    Q_OBJECT
  public:
    GameObjectDialog(Document& doc, GameData& game, Settings& settings, Prompts& prompts,
                     QWidget* parent = nullptr);

    // Asks for a text: a page to copy (from `choices`, any text allowed) or a new name.
    // Empty when cancelled. QInputDialog unless set.
    using TextAsker = std::function<QString(QWidget*, const QString& title, const QString& label,
                                            const QStringList& choices, const QString& initial)>;
    void SetTextAsker(TextAsker ask) { ask_ = std::move(ask); }

    // Reads the tables again for the model's file and the mission (a .mn3/.hog or a loose
    // .gam; empty: none yet).
    void Reload(const QString& mission);
    const GameObjectTables& tables() const { return tables_; }
    GameObjectPage& page() { return *page_; }
    QTreeWidget& pageList() { return *list_; }

    // The buttons' commands.
    void NewObjectLike();
    void ReplacePage();
    void Undo();
    void Redo();
    bool Save();
    // Chooses the mission whose table holds the pages; false when none was chosen.
    bool ChooseMission();
    // Selects the listed page of that name (in the mission when there is one of each).
    void SelectPage(const QString& name);
    // Close: asks to save pages not saved.
    void reject() override;

  private:
    void Refresh();
    void ShowChosenPage();
    void FieldEdited(const QString& path, const QString& value);
    void Report(const std::string& error);
    // The pages a new one may copy, once a mission is there to hold it (empty: none).
    QStringList PagesToCopy();
    // After a page was added: the list with the new page chosen, or why there is none.
    void Added(const std::string& error, const QString& name);
    const ObjectPageItem* ChosenItem() const;

    Document& doc_;
    GameData& game_;
    Settings& settings_;
    Prompts& prompts_;
    TextAsker ask_;
    GameObjectTables tables_;
    QString mission_;
    std::vector<ObjectPageItem> items_;
    QLabel* missionLabel_ = nullptr;
    QTreeWidget* list_ = nullptr;
    GameObjectPage* page_ = nullptr;
    QLabel* problem_ = nullptr;
    QTreeWidget* findings_ = nullptr;
    QPushButton* undo_ = nullptr;
    QPushButton* redo_ = nullptr;
    QPushButton* save_ = nullptr;
};

// The model's file name as the game's pages name it ("" for a model never saved).
std::string ModelFileForPages(const Document& doc);

}  // namespace mw
