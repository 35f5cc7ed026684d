// Recovery copies over a document with a clock the test drives, and the offer at start-up.
#include "editor/autosave.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include "editor/edit_commands.h"
#include "editor/file_commands.h"
#include "editor/recovery.h"
#include "model/oof_reader.h"
#include "support/sample_document.h"
#include "support/scripted_prompts.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

class AutosaveTest : public ::testing::Test {
  protected:
    AutosaveTest()
        : dir_("autosave"),
          folder_(QString::fromStdString((dir_ / "recovery").string())),
          autosave_(sample_.doc, folder_, 60) {
        autosave_.SetClock([this] { return now_; });
    }
    Document& doc() { return sample_.doc; }
    void Edit(const std::string& name) { doc().Apply(MakeRenameCommand(doc(), 1, name)); }
    // The clock moves on and the autosave timer looks.
    void At(qint64 ms) {
        now_ = ms;
        autosave_.Check();
        autosave_.WaitForWrite();
    }
    bool Written() const { return QFile::exists(autosave_.modelFile()); }
    std::vector<std::uint8_t> CopyBytes() const {
        return ReadFileBytes(autosave_.modelFile().toStdString())
            .value_or(std::vector<std::uint8_t>{});
    }

    test::TempDir dir_;
    QString folder_;
    test::SampleDocument sample_;
    Autosave autosave_;
    qint64 now_ = 1000;
};

TEST_F(AutosaveTest, TheFirstChangeIsCopiedWithinFiveSecondsThenEveryInterval) {
    At(1000);
    EXPECT_FALSE(Written());  // nothing unsaved
    Edit("first");
    At(1000 + kFirstCopyDelayMs - 1);
    EXPECT_FALSE(Written());
    At(1000 + kFirstCopyDelayMs);
    ASSERT_TRUE(Written());
    EXPECT_EQ(CopyBytes(), test::SavedBytes(doc().model()));
    QFile info(autosave_.infoFile());
    ASSERT_TRUE(info.open(QIODevice::ReadOnly));
    const QJsonObject json = QJsonDocument::fromJson(info.readAll()).object();
    EXPECT_EQ(json["original"].toString(), doc().ModelPath());
    EXPECT_EQ(json["title"].toString(), "ship.oof");
    EXPECT_EQ(json["archive_entry"].toString(), "");
    EXPECT_EQ(json["pid"].toInteger(), QCoreApplication::applicationPid());
    EXPECT_FALSE(json["time"].toString().isEmpty());

    // Later changes wait for the interval.
    Edit("second");
    At(6000 + 59999);
    ModelData copy;
    ASSERT_EQ(readOOF(copy, CopyBytes()), ResultCode::Success);
    EXPECT_EQ(copy.Sub(1).Name, "first");
    At(6000 + 60000);
    ASSERT_EQ(readOOF(copy, CopyBytes()), ResultCode::Success);
    EXPECT_EQ(copy.Sub(1).Name, "second");
}

TEST_F(AutosaveTest, ASaveOrADiscardRemovesTheCopyAndZeroTurnsItOff) {
    Edit("first");
    At(10000);
    ASSERT_TRUE(Written());
    doc().MarkSaved();  // as Save does
    EXPECT_FALSE(Written());
    EXPECT_FALSE(QFile::exists(autosave_.infoFile()));

    Edit("again");
    At(20000);
    ASSERT_TRUE(Written());
    doc().ResetModel(true);  // another model opened after Discard
    EXPECT_FALSE(Written());

    autosave_.SetInterval(0);
    Edit("off");
    At(100000);
    At(1000000);
    EXPECT_FALSE(Written());
    autosave_.SetInterval(30);  // on again: the change waits no longer than the first delay
    At(1000000 + kFirstCopyDelayMs);
    EXPECT_TRUE(Written());
}

// A copy left by a session that is gone, as a crash leaves it.
class RecoveryTest : public ::testing::Test {
  protected:
    RecoveryTest()
        : dir_("recovery"),
          folder_(QString::fromStdString((dir_ / "recovery").string())),
          doc_(oof_),
          files_(doc_, game_, settings_, prompts_, nullptr),
          autosave_(doc_, folder_, 60) {
        std::filesystem::create_directories(dir_ / "recovery");
    }
    void LeaveCopy(const std::vector<std::uint8_t>& bytes, const char* name = "recovery-7") {
        const auto base = dir_ / "recovery" / name;
        EXPECT_EQ(WriteFileReplacing(base.string() + ".oof", bytes), "");
        QJsonObject info;
        info["original"] = QString(MW_SOURCE_DIR "/samples/ship.oof");
        info["archive_entry"] = "";
        info["time"] = "2026-11-20T10:15:00";
        info["title"] = "ship.oof";
        info["pid"] = 2147483000;  // no such process
        const QByteArray json = QJsonDocument(info).toJson();
        EXPECT_EQ(WriteFileReplacing(base.string() + ".json",
                                     std::vector<std::uint8_t>(json.begin(), json.end())),
                  "");
    }
    std::vector<std::uint8_t> Edited() {
        ModelData m;
        EXPECT_EQ(readOOF(m, *ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof")),
                  ResultCode::Success);
        m.Sub(2).Name = "recovered_wing";
        return test::SavedBytes(m);
    }

    test::TempDir dir_;
    QString folder_;
    clsOOF oof_;
    Document doc_;
    GameData game_;
    Settings settings_;
    test::ScriptedPrompts prompts_;
    FileCommands files_;
    Autosave autosave_;
};

TEST_F(RecoveryTest, RecoverOpensTheCopyUnsavedUnderTheOriginalPath) {
    LeaveCopy(Edited());
    ASSERT_EQ(FindRecoveryCopies(folder_).size(), 1u);
    prompts_.choices = {0};
    ASSERT_TRUE(OfferRecovery(folder_, files_, autosave_, prompts_, nullptr));
    EXPECT_EQ(prompts_.questions, QStringList{RecoveryQuestion("ship.oof", "2026-11-20T10:15:00")});
    EXPECT_EQ(prompts_.questions[0],
              "Meshwright closed without saving changes to ship.oof (2026-11-20 10:15). Recover "
              "them?");
    EXPECT_EQ(doc_.model().Sub(2).Name, "recovered_wing");
    EXPECT_EQ(doc_.ModelPath(), MW_SOURCE_DIR "/samples/ship.oof");
    EXPECT_EQ(doc_.ModelTitle(), "ship.oof");
    EXPECT_TRUE(doc_.isModified());
    // The session keeps the copy up to date now, under its own name.
    EXPECT_TRUE(QFile::exists(autosave_.modelFile()));
    EXPECT_FALSE(QFile::exists(folder_ + "/recovery-7.oof"));
    EXPECT_TRUE(FindRecoveryCopies(folder_).empty());  // this session's own copy
}

TEST_F(RecoveryTest, DiscardDeletesLaterKeepsAndAnUnreadableCopyIsReportedAndKept) {
    LeaveCopy({'P', 'S', 'P', 'O', 1, 2}, "recovery-8");
    prompts_.choices = {0};
    EXPECT_FALSE(OfferRecovery(folder_, files_, autosave_, prompts_, nullptr));
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_TRUE(prompts_.messages[0].text.startsWith("The recovery copy "));
    EXPECT_TRUE(prompts_.messages[0].text.endsWith("It is kept."));
    EXPECT_TRUE(QFile::exists(folder_ + "/recovery-8.oof"));
    EXPECT_FALSE(doc_.hasModel());

    prompts_.choices = {2};  // Later
    EXPECT_FALSE(OfferRecovery(folder_, files_, autosave_, prompts_, nullptr));
    EXPECT_TRUE(QFile::exists(folder_ + "/recovery-8.oof"));
    prompts_.choices = {1};  // Discard
    EXPECT_FALSE(OfferRecovery(folder_, files_, autosave_, prompts_, nullptr));
    EXPECT_FALSE(QFile::exists(folder_ + "/recovery-8.oof"));
    EXPECT_FALSE(QFile::exists(folder_ + "/recovery-8.json"));
}

}  // namespace
}  // namespace mw
