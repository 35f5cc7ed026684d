// The File commands over a document, with the dialogs answered by a script.
#include "editor/file_commands.h"

#include <gtest/gtest.h>
#include <QSignalSpy>
#include <filesystem>
#include <fstream>

#include "cli/cli.h"
#include "convert/orf_writer.h"
#include "editor/edit_commands.h"
#include "gamedata/hog.h"
#include "gamedata_writers.h"
#include "support/sample_document.h"
#include "support/scripted_prompts.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

namespace fs = std::filesystem;
using test::SavedBytes;

const char* const kShip = MW_SOURCE_DIR "/samples/ship.oof";

QString Q(const fs::path& p) {
    return QString::fromStdString(p.string());
}

class FileCommandsTest : public ::testing::Test {
  protected:
    FileCommandsTest() : doc_(oof_), files_(doc_, game_, settings_, prompts_, nullptr) {}

    void Copy(const fs::path& to) {
        fs::copy_file(kShip, to, fs::copy_options::overwrite_existing);
    }

    test::TempDir dir_{"file_commands"};
    clsOOF oof_;
    Document doc_;
    GameData game_;
    Settings settings_;
    test::ScriptedPrompts prompts_;
    FileCommands files_;
};

TEST_F(FileCommandsTest, OpenShowsTheDialogAndRemembersThePath) {
    prompts_.fileNames.push_back(kShip);
    ASSERT_TRUE(files_.Open());
    EXPECT_EQ(prompts_.titles.value(0), "Open Model/Room File");
    EXPECT_EQ(prompts_.filters.value(0), kOpenFilter);
    EXPECT_TRUE(doc_.modelReady());
    EXPECT_EQ(doc_.ModelPath(), kShip);
    EXPECT_EQ(doc_.ModelTitle(), "ship.oof");
    EXPECT_EQ(settings_.RecentFiles.front(), kShip);
    EXPECT_EQ(doc_.model().SubObjectCount(), 7);

    // The next open starts from the model's path; a cancelled dialog changes nothing.
    EXPECT_FALSE(files_.Open());
    EXPECT_EQ(prompts_.initials.value(1), kShip);
    EXPECT_TRUE(doc_.modelReady());
}

TEST_F(FileCommandsTest, AFailedOpenShowsTheReadersMessageAndLeavesNoModel) {
    const fs::path bad = dir_ / "Broken.OOF";
    std::ofstream(bad) << "not a model at all";
    ASSERT_TRUE(files_.OpenPath(kShip));
    EXPECT_FALSE(files_.OpenPath(Q(bad)));
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_EQ(prompts_.messages[0].text, "Not a valid OOF file");
    EXPECT_EQ(prompts_.messages[0].icon, PromptIcon::Exclamation);
    EXPECT_FALSE(doc_.modelReady());
    EXPECT_FALSE(doc_.hasModel());
}

TEST_F(FileCommandsTest, ARoomOpensAsAModelThatSavesBesideIt) {
    ASSERT_TRUE(files_.OpenPath(kShip));
    const fs::path room = dir_ / "Hall.orf";
    ASSERT_TRUE(SaveORF(doc_.model(), room.string(), {}).Written);

    ASSERT_TRUE(files_.OpenPath(Q(room)));
    EXPECT_EQ(doc_.ModelPath(), Q(dir_ / "Hall.oof"));
    EXPECT_EQ(doc_.ModelTitle(), "Hall.oof");
    EXPECT_EQ(settings_.RecentFiles.front(), room.string());
    ASSERT_TRUE(files_.Save());
    EXPECT_TRUE(fs::exists(dir_ / "Hall.oof"));
    EXPECT_TRUE(prompts_.titles.isEmpty());  // no dialog: the path is known
}

TEST_F(FileCommandsTest, ABlenderAddOnPofOpensAsAModelThatSavesAsOof) {
    const fs::path pof = dir_ / "Fighter.POF";
    Copy(pof);
    ASSERT_TRUE(files_.OpenPath(Q(pof)));
    EXPECT_EQ(doc_.model().SubObjectCount(), 7);
    EXPECT_EQ(doc_.ModelPath(), Q(dir_ / "Fighter.oof"));
    EXPECT_EQ(doc_.ModelTitle(), "Fighter.oof");
    ASSERT_TRUE(files_.Save());
    EXPECT_EQ(ReadFileBytes(dir_ / "Fighter.oof"), SavedBytes(doc_.model()));
    EXPECT_EQ(ReadFileBytes(pof), ReadFileBytes(kShip));  // the .pof is left as it was
}

TEST_F(FileCommandsTest, AMissingRecentPathIsReportedAndRemoved) {
    const fs::path gone = dir_ / "gone.oof";
    settings_.RecentFiles = {kShip, gone.string()};
    QSignalSpy changed(&files_, &FileCommands::recentChanged);
    EXPECT_FALSE(files_.OpenRecent(1));
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_EQ(prompts_.messages[0].text, "File gone.oof is no longer valid!");
    EXPECT_EQ(prompts_.messages[0].icon, PromptIcon::Information);
    EXPECT_EQ(settings_.RecentFiles, std::vector<std::string>{kShip});
    EXPECT_EQ(changed.count(), 1);
    EXPECT_TRUE(files_.OpenRecent(0));
    EXPECT_EQ(doc_.ModelPath(), kShip);
}

TEST_F(FileCommandsTest, AnArchiveModelSavesOnlyThroughSaveAs) {
    const auto ship = ReadFileBytes(kShip);
    ASSERT_TRUE(ship);
    const fs::path hog = dir_ / "d3.hog";
    const Bytes archive = WriteHOG({{"ship.oof", *ship}});
    std::ofstream(hog, std::ios::binary)
        .write(reinterpret_cast<const char*>(archive.data()),
               static_cast<std::streamsize>(archive.size()));
    settings_.D3HogPath = hog.string();
    DeriveArchivePaths(settings_);
    game_.Hog.ReadHOGs(settings_, nullptr);
    ASSERT_EQ(game_.Hog.Models.size(), 1u);

    ASSERT_TRUE(files_.OpenArchiveModel(0));
    EXPECT_EQ(doc_.ModelPath(), "ship.oof");
    EXPECT_TRUE(settings_.RecentFiles.empty());

    // Save asks for a name; the first choice exists and "No" asks again.
    const fs::path taken = dir_ / "taken.oof";
    std::ofstream(taken) << "x";
    prompts_.fileNames = {Q(taken), Q(dir_ / "mine.oof")};
    prompts_.answers = {QMessageBox::No};
    ASSERT_TRUE(files_.Save());
    EXPECT_EQ(prompts_.titles, (QStringList{"Save OOF File", "Save OOF File"}));
    EXPECT_EQ(prompts_.questions, QStringList{"Do you wish to overwrite taken.oof?"});
    EXPECT_EQ(fs::file_size(taken), 1u);
    EXPECT_TRUE(fs::exists(dir_ / "mine.oof"));
    EXPECT_EQ(doc_.ModelPath(), Q(dir_ / "mine.oof"));
    EXPECT_EQ(doc_.ModelTitle(), "mine.oof");
}

TEST_F(FileCommandsTest, OverwritingNeedsAYesAndCancelStopsTheCommand) {
    ASSERT_TRUE(files_.OpenPath(kShip));
    const fs::path target = dir_ / "copy.oof";
    std::ofstream(target) << "old";
    prompts_.fileNames = {Q(target)};
    prompts_.answers = {QMessageBox::Cancel};
    EXPECT_FALSE(files_.SaveAs());
    EXPECT_EQ(fs::file_size(target), 3u);
    EXPECT_EQ(doc_.ModelPath(), kShip);

    prompts_.fileNames = {Q(target)};
    prompts_.answers = {QMessageBox::Yes};
    EXPECT_TRUE(files_.SaveAs());
    EXPECT_EQ(*ReadFileBytes(target), SavedBytes(doc_.model()));
}

TEST_F(FileCommandsTest, ExportOffersTheRoomNameAndReportsAFailure) {
    ASSERT_TRUE(files_.OpenPath(kShip));
    prompts_.fileNames = {Q(dir_ / "no_such_folder" / "ship.orf")};
    EXPECT_FALSE(files_.ExportORF());
    EXPECT_EQ(prompts_.titles.value(0), "Save ORF File");
    EXPECT_EQ(prompts_.initials.value(0), QString(kShip).chopped(3) + "orf");
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_EQ(prompts_.messages[0].text, "There was an error saving ship.orf");
    EXPECT_EQ(doc_.ModelPath(), kShip);

    prompts_.fileNames = {Q(dir_ / "ship.orf")};
    EXPECT_TRUE(files_.ExportORF());
    EXPECT_TRUE(fs::exists(dir_ / "ship.orf"));
}

TEST_F(FileCommandsTest, PackageForGameSavesFirstAndListsWhatWentIn) {
    const fs::path mine = dir_ / "mine.oof";
    Copy(mine);
    ASSERT_TRUE(files_.OpenPath(Q(mine)));
    doc_.SelectSubObject(4);
    doc_.Apply(MakeReparentCommand(doc_, 4, 1));
    // Declining to save packages nothing.
    prompts_.answers = {QMessageBox::Cancel};
    EXPECT_FALSE(files_.PackageForGame());
    EXPECT_TRUE(doc_.isModified());
    EXPECT_TRUE(prompts_.titles.isEmpty());

    // Saving first: the package holds the model as saved (no game data: every texture is
    // missing, so the list says so).
    prompts_.answers = {QMessageBox::Save};
    prompts_.fileNames = {Q(dir_ / "mine.mn3")};
    ASSERT_TRUE(files_.PackageForGame());
    EXPECT_FALSE(doc_.isModified());
    EXPECT_EQ(prompts_.titles.value(0), "Package for Game");
    EXPECT_EQ(prompts_.filters.value(0), kPackageFilter);
    EXPECT_EQ(prompts_.initials.value(0), Q(dir_ / "mine.mn3"));
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_TRUE(prompts_.messages[0].text.contains("texture ship_hull: missing"));
    EXPECT_TRUE(prompts_.messages[0].text.contains("mine.mn3: mine.oof"));
    EXPECT_TRUE(prompts_.messages[0].text.contains("3 textures are still missing."));
    EXPECT_EQ(prompts_.messages[0].icon, PromptIcon::Exclamation);
    std::vector<HogDirectoryEntry> entries;
    ASSERT_EQ(ReadHogFileEntries((dir_ / "mine.mn3").string(), entries), HogStatus::Ok);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].Length, fs::file_size(mine));
}

TEST_F(FileCommandsTest, UnsavedChangesAreAskedAboutBeforeAnotherModelOpens) {
    const auto original = *ReadFileBytes(kShip);
    const fs::path mine = dir_ / "mine.oof";
    Copy(mine);
    ASSERT_TRUE(files_.OpenPath(Q(mine)));
    doc_.SelectSubObject(4);
    ASSERT_TRUE(doc_.Apply(MakeReparentCommand(doc_, 4, 1)));
    const auto edited = SavedBytes(doc_.model());

    prompts_.answers = {QMessageBox::Cancel};
    EXPECT_FALSE(files_.OpenPath(kShip));
    EXPECT_EQ(prompts_.questions, QStringList{"Save changes to mine.oof?"});
    EXPECT_EQ(doc_.ModelPath(), Q(mine));
    EXPECT_TRUE(doc_.isModified());
    EXPECT_EQ(SavedBytes(doc_.model()), edited);

    prompts_.answers = {QMessageBox::Save};
    EXPECT_TRUE(files_.OpenPath(kShip));
    EXPECT_EQ(*ReadFileBytes(mine), edited);
    EXPECT_EQ(doc_.ModelPath(), kShip);

    doc_.SelectSubObject(4);
    doc_.Apply(MakeReparentCommand(doc_, 4, 1));
    prompts_.answers = {QMessageBox::Discard};
    EXPECT_TRUE(files_.OpenPath(Q(mine)));
    EXPECT_FALSE(doc_.isModified());
    EXPECT_EQ(*ReadFileBytes(kShip), original);  // the discarded edit went nowhere
}

TEST_F(FileCommandsTest, SavingAModelTheGameRefusesAsksFirst) {
    const fs::path mine = dir_ / "mine.oof";
    Copy(mine);
    ASSERT_TRUE(files_.OpenPath(Q(mine)));
    const auto original = *ReadFileBytes(mine);
    ModelData& m = doc_.model();
    m.AttachPoints.push_back(m.AttachPoints[0]);  // a warning only: saved without asking
    ASSERT_TRUE(files_.Save());
    EXPECT_TRUE(prompts_.questions.isEmpty());

    m.Sub(5).Faces.push_back(m.Sub(5).Faces[0]);  // a glow of two faces: an error
    const auto broken = SavedBytes(m);
    prompts_.answers = {QMessageBox::Cancel};
    EXPECT_FALSE(files_.Save());
    ASSERT_EQ(prompts_.questions.size(), 1);
    EXPECT_TRUE(
        prompts_.questions[0].startsWith("The game will refuse this model or stop on it "
                                         "(1 error):\n\n- Sub-object 'thruster'"))
        << prompts_.questions[0].toStdString();
    EXPECT_NE(*ReadFileBytes(mine), broken);
    prompts_.fileNames = {Q(dir_ / "other.oof")};
    prompts_.answers = {QMessageBox::Cancel};
    EXPECT_FALSE(files_.SaveAs());  // asked before the file name
    EXPECT_TRUE(prompts_.titles.isEmpty());

    prompts_.answers = {QMessageBox::Save};
    EXPECT_TRUE(files_.Save());
    EXPECT_EQ(*ReadFileBytes(mine), broken);
    EXPECT_NE(original, broken);
}

}  // namespace
}  // namespace mw

namespace mw {
namespace {

TEST_F(FileCommandsTest, ExportGltfThenImportGivesTheModelBackUnsaved) {
    ASSERT_TRUE(files_.OpenPath(kShip));
    const ModelData before = doc_.model();
    prompts_.fileNames = {Q(dir_ / "ship")};  // no ending given: a .glb
    ASSERT_TRUE(files_.ExportGltf());
    EXPECT_EQ(prompts_.titles.value(0), "Export glTF");
    EXPECT_EQ(prompts_.filters.value(0), kGltfFilter);
    ASSERT_TRUE(fs::exists(dir_ / "ship.glb"));

    // An edit first: importing asks to save it.
    doc_.Apply(MakeReparentCommand(doc_, 4, 1));
    prompts_.answers = {QMessageBox::Cancel};
    EXPECT_FALSE(files_.ImportModelFrom(Q(dir_ / "ship.glb")));
    prompts_.answers = {QMessageBox::Discard};
    ASSERT_TRUE(files_.ImportModelFrom(Q(dir_ / "ship.glb")));
    // What came in is told in a box the user dismisses.
    ASSERT_FALSE(prompts_.messages.empty());
    EXPECT_TRUE(prompts_.messages.back().text.startsWith(
        "Imported ship.glb: 7 sub-objects, 3 textures, 3 gun points"))
        << prompts_.messages.back().text.toStdString();
    EXPECT_TRUE(
        prompts_.messages.back().text.contains("Keys of \"turret\": 0 position, 3 rotation"));
    EXPECT_EQ(prompts_.messages.back().icon, PromptIcon::Information);
    EXPECT_TRUE(doc_.modelReady());
    EXPECT_TRUE(doc_.isModified());
    EXPECT_EQ(doc_.ModelTitle(), "ship.oof");
    EXPECT_EQ(ModelJson(doc_.model(), true), ModelJson(before, true));
    // Proposed beside the imported file, but Save asks for the name first.
    EXPECT_EQ(doc_.ModelPath(), Q(dir_ / "ship.oof"));
    prompts_.titles.clear();
    prompts_.initials.clear();
    prompts_.fileNames = {Q(dir_ / "imported.oof")};
    ASSERT_TRUE(files_.Save());
    EXPECT_EQ(prompts_.titles.value(0), "Save OOF File");
    EXPECT_EQ(prompts_.initials.value(0), Q(dir_ / "ship.oof"));
    EXPECT_TRUE(fs::exists(dir_ / "imported.oof"));
    EXPECT_FALSE(doc_.NeedsName());
    doc_.Apply(MakeReparentCommand(doc_, 4, 1));

    // A file that is no model is reported and the open one stays.
    std::ofstream(dir_ / "junk.glb") << "junk";
    prompts_.answers = {QMessageBox::Discard};
    EXPECT_FALSE(files_.ImportModelFrom(Q(dir_ / "junk.glb")));
    ASSERT_FALSE(prompts_.messages.empty());
    EXPECT_TRUE(prompts_.messages.back().text.startsWith("Could not import junk.glb: "));
    EXPECT_EQ(doc_.model().SubObjectCount(), before.SubObjectCount());
}

}  // namespace
}  // namespace mw
