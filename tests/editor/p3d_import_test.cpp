// P3D import with stand-in compilers: small scripts named "wine" and "winepath" put first
// on the PATH, playing a compiler that works, one that fails, one that hangs, and none.
#include "editor/p3d_import.h"

#include <gtest/gtest.h>
#include <QElapsedTimer>
#include <QWidget>
#include <filesystem>
#include <fstream>

#include "convert/pofgen.h"
#include "editor/document.h"
#include "editor/file_commands.h"
#include "support/scripted_prompts.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

const char* const kShip = MW_SOURCE_DIR "/samples/ship.oof";

void WriteScript(const fs::path& path, const std::string& body) {
    std::ofstream(path) << "#!/bin/sh\n" << body;
    fs::permissions(path, fs::perms::owner_all);
}

class P3DImportTest : public ::testing::Test {
  protected:
    P3DImportTest()
        : doc_(oof_),
          files_(doc_, game_, settings_, prompts_, &window_),
          import_(files_, settings_, prompts_, &window_),
          oldPath_(qgetenv("PATH")) {
        fs::create_directories(bin_);
        std::ofstream(p3d_) << "// a P3D model";
        std::ofstream(dir_ / "pofgen.exe") << "MZ";
        settings_.POFGENPath = (dir_ / "pofgen.exe").string();
        settings_.PofScale = 0.5f;
        settings_.PofCapitalShips = true;
        BuildPofgenSwitches(settings_);
        // winepath -w /a/b prints Z:\a\b
        WriteScript(
            bin_ / "winepath",
            "[ \"$1\" = -w ] && printf 'Z:%s\\n' \"$(printf '%s' \"$2\" | tr / '\\\\')\"\n");
        qputenv("PATH", QByteArray::fromStdString(bin_.string()) + ":" + oldPath_);
    }
    ~P3DImportTest() override { qputenv("PATH", oldPath_); }

    void StandInWine(const std::string& body) { WriteScript(bin_ / "wine", body); }

    test::TempDir dir_{"p3d-import"};
    fs::path bin_ = dir_ / "bin";
    fs::path p3d_ = dir_ / "Ship.p3d";
    QWidget window_;
    clsOOF oof_;
    Document doc_;
    GameData game_;
    Settings settings_;
    test::ScriptedPrompts prompts_;
    FileCommands files_;
    P3DImport import_;
    QByteArray oldPath_;
};

TEST_F(P3DImportTest, ACompiledModelIsOpenedAndItsOutputShown) {
    // The compiler writes the model in its own capitals, as compilers under wine do.
    StandInWine(
        "echo \"compiler: $1\"\nshift\nprintf 'switches and file: %s\\n' \"$*\"\n"
        "printf 'Processing hull...\\r\\nDone.\\r\\n'\ncp '" +
        std::string(kShip) + "' '" + (dir_ / "Ship.oof").string() + "'\n");
    prompts_.fileNames.push_back(QString::fromStdString(p3d_.string()));
    ASSERT_TRUE(import_.Import());
    EXPECT_EQ(prompts_.titles.value(0), "Import P3D file");
    EXPECT_EQ(prompts_.filters.value(0), kP3DFilter);
    EXPECT_TRUE(prompts_.messages.empty());
    EXPECT_TRUE(doc_.modelReady());
    EXPECT_EQ(doc_.model().SubObjectCount(), 7);
    EXPECT_EQ(doc_.ModelPath().toStdString(), (dir_ / "Ship.oof").string());
    EXPECT_EQ(doc_.ModelTitle(), "Ship.oof");
    EXPECT_EQ(settings_.RecentFiles.front(), (dir_ / "Ship.oof").string());

    ASSERT_NE(import_.outputWindow(), nullptr);
    EXPECT_TRUE(import_.outputWindow()->isVisible());
    const QString output = import_.outputWindow()->output();
    EXPECT_TRUE(output.contains("compiler: " + QString::fromStdString(settings_.POFGENPath)));
    const QString windowsP3d = "Z:" + QString::fromStdString(p3d_.string()).replace('/', '\\');
    EXPECT_TRUE(output.contains("switches and file: -s0.5 -b " + windowsP3d))
        << output.toStdString();
    EXPECT_TRUE(output.contains("Processing hull...\nDone.\n"));
}

TEST_F(P3DImportTest, OutputIsShownOnlyWhenAskedFor) {
    StandInWine("echo fine\ncp '" + std::string(kShip) + "' '" + (dir_ / "Ship.OOF").string() +
                "'\n");
    settings_.PofDisplayOutput = false;
    ASSERT_TRUE(import_.ImportFile(QString::fromStdString(p3d_.string())));
    EXPECT_EQ(import_.outputWindow(), nullptr);

    // A compiler that ends without writing a model: the reader's message, no model.
    fs::remove(dir_ / "Ship.OOF");
    StandInWine("echo nothing written\n");
    EXPECT_FALSE(import_.ImportFile(QString::fromStdString(p3d_.string())));
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_EQ(prompts_.messages[0].icon, PromptIcon::Exclamation);
    EXPECT_FALSE(doc_.modelReady());
}

TEST_F(P3DImportTest, ErrorProcessingShowsTheOutputAndLoadsNothing) {
    StandInWine("echo 'Reading Ship.p3d'\necho 'Error Processing object hull' >&2\ncp '" +
                std::string(kShip) + "' '" + (dir_ / "Ship.OOF").string() + "'\n");
    settings_.PofDisplayOutput = false;
    EXPECT_FALSE(import_.ImportFile(QString::fromStdString(p3d_.string())));
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_EQ(prompts_.messages[0].text, "POFGEN had errors. See Output for details.");
    ASSERT_NE(import_.outputWindow(), nullptr);
    EXPECT_TRUE(import_.outputWindow()->isVisible());
    EXPECT_TRUE(import_.outputWindow()->output().contains("Error Processing object hull"));
    EXPECT_FALSE(doc_.hasModel());
}

TEST_F(P3DImportTest, WithoutWineNothingRuns) {
    qputenv("PATH", QByteArray::fromStdString(bin_.string()));  // winepath alone
    EXPECT_FALSE(import_.ImportFile(QString::fromStdString(p3d_.string())));
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_TRUE(prompts_.messages[0].text.startsWith("Error running POFGEN!\n"));
    EXPECT_TRUE(prompts_.messages[0].text.contains("wine"));
    EXPECT_FALSE(doc_.hasModel());

    // A "wine" that cannot be started at all.
    std::ofstream(bin_ / "wine") << "not a program";
    fs::permissions(bin_ / "wine", fs::perms::owner_all);
    EXPECT_FALSE(import_.ImportFile(QString::fromStdString(p3d_.string())));
    EXPECT_EQ(prompts_.messages.back().text, "Error running POFGEN!");
}

TEST_F(P3DImportTest, AHangingCompilerCanBeStopped) {
    StandInWine("echo started\nexec sleep 60\n");
    import_.SetAskToStopAfter(0.3);
    prompts_.answers = {QMessageBox::No, QMessageBox::Yes};
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(import_.ImportFile(QString::fromStdString(p3d_.string())));
    EXPECT_LT(clock.elapsed(), 20000);
    EXPECT_EQ(prompts_.questions.size(), 2);  // asked again after No
    ASSERT_NE(import_.outputWindow(), nullptr);
    EXPECT_TRUE(import_.outputWindow()->output().contains("started"));
    EXPECT_FALSE(doc_.hasModel());
}

}  // namespace
}  // namespace mw
