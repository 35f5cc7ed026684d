// The preferences dialog over scratch settings: what it shows, how it corrects fields as the
// user leaves them, and what OK, Cancel and its buttons do.
#include "editor/dialogs/preferences_dialog.h"

#include <gtest/gtest.h>
#include <QAccessible>
#include <QCheckBox>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <fstream>

#include "convert/pofgen.h"
#include "editor/dialogs/ogf_path_dialog.h"
#include "editor/widgets/spin_control.h"
#include "support/scripted_prompts.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

QString Q(const fs::path& p) {
    return QString::fromStdString(p.string());
}

void Touch(const fs::path& p) {
    fs::create_directories(p.parent_path());
    std::ofstream(p) << "x";
}

class PreferencesTest : public ::testing::Test {
  protected:
    PreferencesTest() {
        Touch(dir_ / "Descent3" / "d3.hog");
        Touch(dir_ / "tools" / "pofgen.exe");
        settings_.D3HogPath = (dir_ / "Descent3" / "d3.hog").string();
        settings_.POFGENPath = (dir_ / "tools" / "pofgen.exe").string();
        settings_.PofChunkSplits = {3, 3, 3};
        settings_.PofScale = 0.5f;
        BuildPofgenSwitches(settings_);
    }

    // Opens the dialog as the user sees it (focus moves only in an active window).
    frmPreferences& Open() {
        dialog_ = std::make_unique<frmPreferences>(settings_, prompts_);
        dialog_->show();
        dialog_->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog_.get()));
        return *dialog_;
    }
    template <typename T = QLineEdit>
    T* Field(const QString& name) {
        T* w = dialog_->findChild<T*>(name);
        EXPECT_NE(w, nullptr) << name.toStdString();
        return w;
    }
    // Types into a field and leaves it with Tab.
    void TypeAndLeave(const QString& name, const QString& text) {
        QLineEdit* f = Field(name);
        f->setFocus();
        f->selectAll();
        QTest::keyClicks(f, text);
        QTest::keyClick(f, Qt::Key_Tab);
        QApplication::processEvents();
    }
    QStringList Messages() const {
        QStringList out;
        for (const auto& m : prompts_.messages)
            out << m.text;
        return out;
    }

    test::TempDir dir_{"preferences"};
    Settings settings_;
    test::ScriptedPrompts prompts_;
    std::unique_ptr<frmPreferences> dialog_;
};

TEST_F(PreferencesTest, OpensWithValidPathsOnlyAndOKWaitsForAChange) {
    settings_.MN3GAMPath = (dir_ / "gone.mn3").string();
    Touch(dir_ / "back.tga");
    settings_.BackgroundImage = (dir_ / "back.tga").string();
    settings_.CombineRooms = false;
    Touch(dir_ / "Descent3" / "Descent3");  // not executable: no program to start
    settings_.GameProgram = (dir_ / "Descent3" / "Descent3").string();
    Open();
    EXPECT_EQ(dialog_->windowTitle(), "Meshwright Preferences");
    EXPECT_EQ(Field("txtGameProgram")->text(), "");
    EXPECT_EQ(Field("txtD3Path")->text(), Q(dir_ / "Descent3" / "d3.hog"));
    EXPECT_EQ(Field("txtMN3GAMPath")->text(), "");  // its file is gone
    EXPECT_EQ(Field("txtBackground")->text(), Q(dir_ / "back.tga"));
    EXPECT_EQ(Field("txtScaleFactor")->text(), "0.50000000");
    EXPECT_EQ(Field("txtErrorTolerance")->text(), "0.00000000");
    EXPECT_EQ(Field("txtChunkSplits_1")->text(), "3");
    EXPECT_TRUE(Field<QRadioButton>("optOOFORF_0")->isChecked());
    EXPECT_TRUE(Field<QCheckBox>("chkPOFGENOutput")->isChecked());
    EXPECT_FALSE(dialog_->okButton().isEnabled());
    Field<QCheckBox>("chkCapitalShips")->click();
    EXPECT_TRUE(dialog_->okButton().isEnabled());

    // Every control can be found by its caption.
    for (QWidget* w : dialog_->findChildren<QWidget*>()) {
        if (!w->isVisible() || w->focusPolicy() == Qt::NoFocus) continue;
        QAccessibleInterface* a = QAccessible::queryAccessibleInterface(w);
        ASSERT_NE(a, nullptr);
        EXPECT_FALSE(a->text(QAccessible::Name).isEmpty()) << w->objectName().toStdString();
    }
}

TEST_F(PreferencesTest, NumberFieldsAreCorrectedWhenLeft) {
    Open();
    TypeAndLeave("txtChunkSplits_0", "-3");
    EXPECT_EQ(Field("txtChunkSplits_0")->text(), "0");
    TypeAndLeave("txtChunkSplits_1", "300");
    EXPECT_EQ(Field("txtChunkSplits_1")->text(), "255");
    TypeAndLeave("txtChunkSplits_2", "6.5");  // halves to even
    EXPECT_EQ(Field("txtChunkSplits_2")->text(), "6");
    TypeAndLeave("txtScaleFactor", "0");
    EXPECT_EQ(Field("txtScaleFactor")->text(), "0.02540000");
    TypeAndLeave("txtScaleFactor", "70000");
    EXPECT_EQ(Field("txtScaleFactor")->text(), "65535.0000");
    TypeAndLeave("txtScaleFactor", "1,5");
    EXPECT_EQ(Field("txtScaleFactor")->text(), "1.50000000");
    TypeAndLeave("txtErrorTolerance", "-1");
    EXPECT_EQ(Field("txtErrorTolerance")->text(), "0.00000000");
    EXPECT_EQ(Messages(),
              (QStringList{
                  "Error: Chunk Splits <= 1 Illegal!", "Error: Chunk Splits > 255 Illegal!",
                  "Error: Scale Factor <= 0 Illegal!", "Error: Scale Factor > 65535.0000 Illegal!",
                  "Error: Tolerance < 0 Illegal!"}));
    for (const auto& m : prompts_.messages)
        EXPECT_EQ(m.icon, PromptIcon::None);
}

TEST_F(PreferencesTest, MixedChunksAtOKKeepTheOldCompilerOptions) {
    Open();
    TypeAndLeave("txtChunkSplits_0", "4");
    TypeAndLeave("txtChunkSplits_1", "0");
    TypeAndLeave("txtChunkSplits_2", "4");
    TypeAndLeave("txtScaleFactor", "2");
    Field<QRadioButton>("optOOFORF_1")->click();
    QTest::mouseClick(&dialog_->okButton(), Qt::LeftButton);
    EXPECT_EQ(Messages().value(0), "Invalid Chunk Size! Must be all 0's or all above 0!");
    EXPECT_EQ(dialog_->result(), QDialog::Accepted);  // the dialog closes all the same
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_EQ(settings_.PofChunkSplits, (std::array<std::uint8_t, 3>{3, 3, 3}));
    EXPECT_FLOAT_EQ(settings_.PofScale, 0.5f);
    EXPECT_EQ(settings_.PofgenSwitches, "-s0.5 -n3,3,3 ");
    EXPECT_TRUE(settings_.CombineRooms);  // the room options are stored regardless
}

TEST_F(PreferencesTest, OKStoresEverythingAndTellsWhatChanged) {
    fs::create_directories(dir_ / "textures");
    Touch(dir_ / "mission.MN3");
    Open();
    TypeAndLeave("txtOGFPath", Q(dir_ / "textures"));  // no trailing separator
    TypeAndLeave("txtMN3GAMPath", Q(dir_ / "mission.MN3"));
    TypeAndLeave("txtBackground", Q(dir_ / "missing.bmp"));
    EXPECT_EQ(Field("txtBackground")->text(), "");
    TypeAndLeave("txtChunkSplits_0", "5");
    TypeAndLeave("txtChunkSplits_1", "5");
    TypeAndLeave("txtChunkSplits_2", "5");
    Field<QRadioButton>("optShadingMode_1")->click();
    Field<QCheckBox>("chkAnimation")->click();
    Field<QCheckBox>("chkPOFGENOutput")->click();
    EXPECT_EQ(dialog_->findChild<spinControl*>("txtAutosave")->Value(), 60.0f);
    dialog_->findChild<spinControl*>("txtAutosave")->SetValue(0.0f);  // no recovery copies
    QTest::mouseClick(&dialog_->okButton(), Qt::LeftButton);

    EXPECT_EQ(settings_.AutosaveSeconds, 0);
    EXPECT_TRUE(dialog_->PathsChanged());
    EXPECT_FALSE(dialog_->BackgroundChanged());
    EXPECT_EQ(settings_.OGFPath, (dir_ / "textures").string() + "/");
    EXPECT_EQ(settings_.MN3GAMPath, (dir_ / "mission.MN3").string());
    EXPECT_EQ(settings_.Extra13Path, (dir_ / "Descent3" / "Extra13.hog").string());
    EXPECT_EQ(settings_.PofChunkSplits, (std::array<std::uint8_t, 3>{5, 5, 5}));
    EXPECT_EQ(settings_.PofShadingMode, 1);
    EXPECT_TRUE(settings_.PofAnimationOutput);
    EXPECT_FALSE(settings_.PofDisplayOutput);
    EXPECT_EQ(settings_.PofgenSwitches, "-s0.50000000 -d1 -n5,5,5 -a ");
    EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(PreferencesTest, CompilerFieldIsStoredWhenLeftEvenIfCancelled) {
    Touch(dir_ / "other" / "BSPGEN.EXE");
    Touch(dir_ / "other" / "notes.txt");
    Open();
    TypeAndLeave("txtPathPofgen", Q(dir_ / "other" / "notes.txt"));
    EXPECT_EQ(Field("txtPathPofgen")->text(), "");
    EXPECT_EQ(settings_.POFGENPath, (dir_ / "tools" / "pofgen.exe").string());
    TypeAndLeave("txtPathPofgen", Q(dir_ / "other" / "BSPGEN.EXE"));
    dialog_->reject();
    EXPECT_EQ(settings_.POFGENPath, (dir_ / "other" / "BSPGEN.EXE").string());
    EXPECT_EQ(settings_.PofgenSwitches, "-s0.5 -n3,3,3 ");
}

TEST_F(PreferencesTest, ResetClearAndBrowse) {
    settings_.PofCapitalShips = true;
    settings_.PofDisplayOutput = false;
    Open();
    dialog_->ResetDefaults();
    EXPECT_EQ(Field("txtScaleFactor")->text(), "0.02540000");
    EXPECT_EQ(Field("txtChunkSplits_2")->text(), "0");
    EXPECT_FALSE(Field<QCheckBox>("chkCapitalShips")->isChecked());
    EXPECT_TRUE(Field<QCheckBox>("chkPOFGENOutput")->isChecked());
    EXPECT_EQ(Field("txtD3Path")->text(), Q(dir_ / "Descent3" / "d3.hog"));  // paths stay
    EXPECT_TRUE(dialog_->okButton().isEnabled());

    dialog_->ClearAllPaths();
    for (const char* name : {"txtD3Path", "txtMN3GAMPath", "txtOGFPath", "txtPathPofgen",
                             "txtBackground", "txtGameProgram"})
        EXPECT_EQ(Field(name)->text(), "") << name;

    prompts_.fileNames = {Q(dir_ / "Descent3" / "d3.hog"), Q(dir_ / "tools" / "gcc"), ""};
    dialog_->Browse(0);
    dialog_->Browse(3);  // not a compiler: not taken
    dialog_->Browse(4);  // cancelled
    EXPECT_EQ(prompts_.titles, (QStringList{"Locate D3 Hog file", "Locate Pofgen.exe/BSPGen.exe",
                                            "Select Background Image File"}));
    EXPECT_EQ(prompts_.initials.value(0), "d3.hog");
    EXPECT_EQ(Field("txtD3Path")->text(), Q(dir_ / "Descent3" / "d3.hog"));
    EXPECT_EQ(Field("txtPathPofgen")->text(), "");

    QString offered;
    dialog_->SetFolderChooser([&](QWidget*, const QString& start) {
        offered = start;
        return Q(dir_ / "Descent3");
    });
    dialog_->Browse(2);
    EXPECT_EQ(Field("txtOGFPath")->text(), Q(dir_ / "Descent3") + "/");

    // OK after Clear Paths forgets the compiler too.
    QTest::mouseClick(&dialog_->okButton(), Qt::LeftButton);
    EXPECT_EQ(settings_.POFGENPath, "");
    EXPECT_EQ(settings_.OGFPath, (dir_ / "Descent3").string() + "/");
}

TEST_F(PreferencesTest, AutofindFillsTheFieldsOrSaysItFailed) {
    test::TempDir home("preferences-home");
    AutofindPlaces places;
    places.home = home.path();
    Open();
    dialog_->ClearAllPaths();
    dialog_->SetAutofindPlaces(places);
    QTest::mouseClick(Field<QPushButton>("cmdAutofind"), Qt::LeftButton);
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_EQ(prompts_.messages[0].text,
              "Autofind failed! Could not find Descent 3 Directory!\nYou will need to find these "
              "files manually.");
    EXPECT_EQ(prompts_.messages[0].icon, PromptIcon::Exclamation);

    const fs::path game = home / ".wine/drive_c/Descent 3";
    Touch(game / "D3.hog");
    Touch(game / "Pofgen.exe");
    // The open-source engine's program, installed apart from the retail data.
    const fs::path program = home / ".local/bin/Descent3";
    Touch(program);
    fs::permissions(program, fs::perms::owner_exec, fs::perm_options::add);
    QTest::mouseClick(Field<QPushButton>("cmdAutofind"), Qt::LeftButton);
    EXPECT_EQ(Field("txtD3Path")->text(), Q(game / "D3.hog"));
    EXPECT_EQ(Field("txtPathPofgen")->text(), Q(game / "Pofgen.exe"));
    EXPECT_EQ(Field("txtGameProgram")->text(), Q(program));
    QTest::mouseClick(&dialog_->okButton(), Qt::LeftButton);
    EXPECT_EQ(settings_.D3HogPath, (game / "D3.hog").string());
    EXPECT_EQ(settings_.POFGENPath, (game / "Pofgen.exe").string());
    EXPECT_EQ(settings_.GameProgram, program.string());
}

TEST(OGFPathTest, ListsTheFolderImagesAndHandsBackTheFolder) {
    test::TempDir dir("ogf-path");
    Touch(dir / "images" / "hull.ogf");
    Touch(dir / "images" / "Glow.OAF");
    Touch(dir / "images" / "readme.txt");
    frmOGFPath chooser(Q(dir / "images"));
    EXPECT_EQ(chooser.windowTitle(), "Select Custom OGF/OAF Path");
    EXPECT_EQ(chooser.folder(), Q(dir / "images"));
    QListView& files = chooser.fileList();
    QTRY_COMPARE(files.model()->rowCount(files.rootIndex()), 2);
}
}  // namespace
}  // namespace mw
