// A session killed with SIGKILL leaves its recovery copy, and the next start offers it back.
#include <gtest/gtest.h>
#include <QDir>
#include <QProcess>
#include <csignal>
#include <filesystem>

#include "model/file_io.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

class CrashRecoveryTest : public ::testing::Test {
  protected:
    CrashRecoveryTest() : dir_("crash-recovery") {
        // Settings that name the sample's game data, so start-up asks for nothing.
        std::filesystem::create_directories(dir_ / "config/Meshwright");
        const std::string ini =
            "[Path Settings]\nD3HogPath=" MW_SOURCE_DIR "/samples/gamedata/d3.hog\n";
        EXPECT_EQ(WriteFileReplacing(dir_ / "config/Meshwright/MWUIData.ini",
                                     std::vector<std::uint8_t>(ini.begin(), ini.end())),
                  "");
        std::filesystem::copy_file(MW_SOURCE_DIR "/samples/ship.oof", dir_ / "ship.oof");
        env_ = QProcessEnvironment::systemEnvironment();
        env_.insert("XDG_CONFIG_HOME", QString::fromStdString((dir_ / "config").string()));
        env_.insert("XDG_STATE_HOME", QString::fromStdString((dir_ / "state").string()));
    }
    void Start(QProcess& p, const QStringList& args) {
        p.setProcessEnvironment(env_);
        p.start(MW_RECOVERY_HELPER, args);
        ASSERT_TRUE(p.waitForStarted(10000));
    }
    QString Recovery() const {
        return QString::fromStdString((dir_ / "state/Meshwright/recovery").string());
    }

    test::TempDir dir_;
    QProcessEnvironment env_;
};

TEST_F(CrashRecoveryTest, AKilledSessionIsOfferedBackAtTheNextStart) {
    QProcess editing;
    Start(editing, {"edit", QString::fromStdString((dir_ / "ship.oof").string())});
    ASSERT_TRUE(editing.waitForReadyRead(60000)) << editing.readAllStandardError().toStdString();
    const QString line = QString::fromLocal8Bit(editing.readLine()).trimmed();
    ASSERT_TRUE(line.startsWith("written ")) << line.toStdString();
    ::kill(static_cast<pid_t>(editing.processId()), SIGKILL);
    ASSERT_TRUE(editing.waitForFinished(10000));
    EXPECT_EQ(editing.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(QDir(Recovery()).entryList({"*.oof"}, QDir::Files).size(), 1);

    QProcess again;
    Start(again, {"recover"});
    ASSERT_TRUE(again.waitForFinished(60000));
    const QString out = QString::fromLocal8Bit(again.readAllStandardOutput());
    EXPECT_EQ(again.exitCode(), 0) << again.readAllStandardError().toStdString();
    EXPECT_TRUE(out.contains("questions 1\n")) << out.toStdString();
    EXPECT_TRUE(out.contains("path " + QString::fromStdString((dir_ / "ship.oof").string()) + "\n"))
        << out.toStdString();
    EXPECT_TRUE(out.contains("modified 1\n")) << out.toStdString();
    EXPECT_TRUE(out.contains("title ship.oof[*] - ")) << out.toStdString();
    EXPECT_TRUE(out.contains("star 1\n")) << out.toStdString();  // the title shows the "*"
    EXPECT_TRUE(out.contains("part crashed_wing\n")) << out.toStdString();
    // The original file was never touched.
    EXPECT_EQ(ReadFileBytes(dir_ / "ship.oof"), ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof"));
}

}  // namespace
}  // namespace mw
