// The Game Object dialog over the sample ship, the sample's game data (a generic page naming
// ship.oof) and a mission archive made here: the pages listed, ranges and masks marked
// against the model, edits checked, undone and saved into the mission's table alone, and new
// objects and replacements.
#include "editor/dialogs/game_object_dialog.h"

#include <gtest/gtest.h>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTreeWidget>

#include "editor/dialogs/game_object_page.h"
#include "gamedata/gam_fields.h"
#include "gamedata/gam_json.h"
#include "gamedata/hog_writer.h"
#include "gamedata_writers.h"
#include "support/sample_document.h"
#include "support/scripted_prompts.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

int StateIndex(const char* key) {
    for (int a = 0; a < kAnimStates; ++a) {
        if (std::string_view(kAnimStateKeys[a]) == key) return a;
    }
    return -1;
}

class GameObjectDialogTest : public ::testing::Test {
  protected:
    GameObjectDialogTest() {
        test::ReadSampleGameData(settings_, game_);
        GamObjectPage mine = ObjectPage("Mission Ship", {"SHIP.OOF", "", ""}, 0);
        mine.IdleFrom = 5;
        mine.IdleTo = 10;
        mine.FirstWeapon = "Laser";
        mine.FirstMask = 0x03;  // gun points 0 and 1: the model's battery 0 has both
        table_ = GamWriter().sound("Bang", "bang.wav").object(mine).bytes();
        readme_ = {'h', 'e', 'l', 'l', 'o'};
        mission_ = dir_ / "mymission.mn3";
        WriteFileReplacing(mission_,
                           WriteHOG({{"mymission.gam", table_}, {"readme.txt", readme_}}));
        settings_.MN3GAMPath = mission_.string();
    }

    GameObjectDialog& Open() {
        dialog_ = std::make_unique<GameObjectDialog>(sample_.doc, game_, settings_, prompts_);
        dialog_->show();
        return *dialog_;
    }
    QStringList Listed() const {
        QStringList out;
        QTreeWidget& list = dialog_->pageList();
        for (int i = 0; i < list.topLevelItemCount(); ++i) {
            const QTreeWidgetItem* it = list.topLevelItem(i);
            out << it->text(0) + " " + it->text(1) + " / " + it->text(2);
        }
        return out;
    }
    QStringList FindingCodes() const {
        QStringList out;
        auto* list = dialog_->findChild<QTreeWidget*>("lstFindings");
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            out << list->topLevelItem(i)->text(1);
        return out;
    }
    // The mission's table as the file now holds it.
    GamTable SavedTable() const {
        TableFile file;
        std::string message;
        EXPECT_EQ(LoadTableFile(mission_, file, message), TableLoad::Ok) << message;
        return file.Table;
    }

    test::TempDir dir_{"game-object"};
    fs::path mission_;
    Bytes table_, readme_;
    Settings settings_;
    GameData game_;
    test::SampleDocument sample_;
    test::ScriptedPrompts prompts_;
    std::unique_ptr<GameObjectDialog> dialog_;
};

TEST_F(GameObjectDialogTest, ListsThePagesNamingTheModelAndMarksWhatDoesNotFit) {
    Open();
    EXPECT_EQ(dialog_->windowTitle(), "Game Object - ship.oof");
    EXPECT_EQ(Listed(),
              (QStringList{"generic Mission Ship / mission", "generic Sample Ship / d3.hog"}));
    GameObjectPage& page = dialog_->page();
    const int idle = StateIndex("idle");
    QTableWidget& anim = page.animationTable();
    EXPECT_EQ(anim.item(idle, 1)->text(), "5");
    EXPECT_EQ(anim.item(idle, 2)->text(), "10");
    EXPECT_FALSE(page.AnimationMarked(idle));
    EXPECT_EQ(dialog_->findChild<QLabel*>("lblModelFrames")->text(),
              "The model's keys: frames 0 to 20.");
    EXPECT_EQ(page.batteryTable().item(0, 2)->text(), "0+1");
    EXPECT_FALSE(page.BatteryMarked(0));
    EXPECT_FALSE(FindingCodes().contains("animation-range"));

    // A range past the model's last key, typed into the table, is marked and found.
    anim.item(idle, 2)->setText("40");
    EXPECT_EQ(anim.item(idle, 2)->text(), "40");
    EXPECT_TRUE(page.AnimationMarked(idle));
    EXPECT_TRUE(FindingCodes().contains("animation-range"));
    EXPECT_TRUE(dialog_->findChild<QPushButton*>("cmdSave")->isEnabled());

    // Undo and Redo inside the dialog.
    dialog_->Undo();
    EXPECT_EQ(page.animationTable().item(idle, 2)->text(), "10");
    EXPECT_FALSE(page.AnimationMarked(idle));
    EXPECT_FALSE(dialog_->tables().IsModified());
    dialog_->Redo();
    EXPECT_TRUE(page.AnimationMarked(idle));
    dialog_->Undo();

    // The game's page is shown, not edited.
    dialog_->pageList().setCurrentItem(dialog_->pageList().topLevelItem(1));
    EXPECT_TRUE(dialog_->findChild<QLineEdit*>("txtSize")->isReadOnly());
    EXPECT_EQ(dialog_->findChild<QLineEdit*>("txtName")->text(), "Sample Ship");
}

TEST_F(GameObjectDialogTest, FieldsAreCheckedAsTypedAndSaveChangesOnlyTheTable) {
    Open();
    auto* size = dialog_->findChild<QLineEdit*>("txtSize");
    auto* name = dialog_->findChild<QLineEdit*>("txtName");
    auto* problem = dialog_->findChild<QLabel*>("lblProblem");
    size->setFocus();
    size->selectAll();
    QTest::keyClicks(size, "big");
    EXPECT_FALSE(problem->text().isEmpty());
    EXPECT_FALSE(size->styleSheet().isEmpty());
    size->selectAll();
    QTest::keyClicks(size, "7.5");
    EXPECT_TRUE(problem->text().isEmpty());
    QTest::keyClick(size, Qt::Key_Return);
    name->setFocus();
    name->selectAll();
    QTest::keyClicks(name, QString(40, 'x'));  // longer than a page string holds
    EXPECT_NE(problem->text().indexOf("34"), -1) << problem->text().toStdString();
    name->selectAll();
    QTest::keyClicks(name, "Mission Ship II");
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_EQ(Listed().value(0), "generic Mission Ship II / mission");

    ASSERT_TRUE(dialog_->Save());
    const GamTable saved = SavedTable();
    ASSERT_EQ(saved.Pages.size(), 2u);
    std::string error;
    EXPECT_EQ(saved.Pages[0].Bytes, ReadGamPages(table_, error)->Pages[0].Bytes);  // the sound
    const auto json = PageJson(saved.Pages[1]);
    EXPECT_EQ(json["name"], "Mission Ship II");
    EXPECT_EQ(json["size"], 7.5);
    EXPECT_EQ(json["model"], "SHIP.OOF");
    EXPECT_EQ(json["animation"]["standing"]["idle"]["to"], 10);
    // The archive's other entry is as it was.
    const auto files = ReadHogFiles(*ReadFileBytes(mission_));
    ASSERT_TRUE(files);
    ASSERT_EQ(files->size(), 2u);
    EXPECT_EQ((*files)[1].Name, "readme.txt");
    EXPECT_EQ((*files)[1].Data, readme_);
    EXPECT_FALSE(dialog_->tables().IsModified());
}

TEST_F(GameObjectDialogTest, NewObjectLikeAndReplace) {
    Open();
    std::deque<QString> answers = {"Sample Ship", "Sample Ship Mk2", "Sample Ship", "Sample Ship"};
    QStringList offered;
    dialog_->SetTextAsker(
        [&](QWidget*, const QString&, const QString&, const QStringList& choices, const QString&) {
            if (!choices.isEmpty()) offered = choices;
            const QString a = answers.front();
            answers.pop_front();
            return a;
        });
    dialog_->NewObjectLike();
    EXPECT_EQ(offered, (QStringList{"Mission Ship", "Sample Ship"}));
    EXPECT_EQ(dialog_->findChild<QLineEdit*>("txtName")->text(), "Sample Ship Mk2");
    EXPECT_EQ(dialog_->findChild<QLineEdit*>("txtModel")->text(), "ship.oof");
    EXPECT_FALSE(dialog_->findChild<QLineEdit*>("txtSize")->isReadOnly());

    dialog_->ReplacePage();
    EXPECT_EQ(Listed(),
              (QStringList{"generic Mission Ship / mission", "generic Sample Ship Mk2 / mission",
                           "generic Sample Ship / mission", "generic Sample Ship / d3.hog"}));
    EXPECT_EQ(dialog_->pageList().currentItem()->text(2), "mission");
    // A second replacement of the same page is refused with a message.
    dialog_->ReplacePage();
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_EQ(prompts_.messages[0].text, "The mission already has a page named \"Sample Ship\".");

    // Closing with unsaved pages asks; Yes saves them.
    prompts_.answers = {QMessageBox::Yes};
    QTest::mouseClick(dialog_->findChild<QPushButton*>("cmdClose"), Qt::LeftButton);
    EXPECT_FALSE(dialog_->isVisible());
    const GamTable saved = SavedTable();
    ASSERT_EQ(saved.Pages.size(), 4u);
    EXPECT_EQ(saved.Pages[2].Name(), "Sample Ship Mk2");
    EXPECT_EQ(saved.Pages[3].Name(), "Sample Ship");
    EXPECT_EQ(PageJson(saved.Pages[3])["model"], "ship.oof");
}

TEST_F(GameObjectDialogTest, AMaskNamingAMissingGunPointIsMarked) {
    GamObjectPage bad = ObjectPage("Bad Ship", {"ship.oof", "", ""}, 0);
    bad.FirstWeapon = "Laser";
    bad.FirstMask = 0x04;  // gun point 2: battery 0 of the model has two
    WriteFileReplacing(mission_, WriteHOG({{"mymission.gam", GamWriter().object(bad).bytes()}}));
    Open();
    EXPECT_TRUE(dialog_->page().BatteryMarked(0));
    EXPECT_TRUE(FindingCodes().contains("battery-mask-gunpoint"));
}

}  // namespace
}  // namespace mw
