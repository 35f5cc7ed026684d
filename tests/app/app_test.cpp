// Start-up pieces: the version caption, the scrambled logo, the manual's place.
#include <gtest/gtest.h>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "app/command_line.h"
#include "app/logo.h"
#include "app/scramble.h"
#include "editor/dialogs/help_window.h"
#include "editor/dialogs/progress_dialog.h"
#include "editor/dialogs/scale_dialog.h"
#include "model/version.h"

namespace mw {
namespace {

TEST(CommandLineTest, TakesOneModelAndQtsOwnOptions) {
    EXPECT_EQ(ParseEditorArguments({"ship.oof"}).model, "ship.oof");
    EXPECT_TRUE(ParseEditorArguments({"--help"}).help);
    EXPECT_TRUE(ParseEditorArguments({"ship.oof", "-h"}).help);
    const EditorArguments qt =
        ParseEditorArguments({"-platform", "xcb", "--style", "Fusion", "-reverse", "a.orf"});
    EXPECT_EQ(qt.error, "");
    EXPECT_EQ(qt.model, "a.orf");
    EXPECT_EQ(ParseEditorArguments({"--bogus"}).error, "Unknown option '--bogus'");
    EXPECT_FALSE(ParseEditorArguments({"a.oof", "b.oof"}).error.empty());
    EXPECT_EQ(ParseEditorArguments({"-"}).model, "-");  // a file named "-" is no option
}

TEST(VersionTest, MinorVersionAndRevisionRunTogether) {
    EXPECT_EQ(VersionText(2, 0, 11), "Meshwright v2.011");
    EXPECT_EQ(VersionText(1, 2, 3), "Meshwright v1.23");
    EXPECT_EQ(VersionText(), "Meshwright v" + std::to_string(kVersionMajor) + "." +
                                 std::to_string(kVersionMinor) + std::to_string(kVersionRevision));
}

TEST(LogoTest, TheKeyRunsOverEveryByteAndUndoesItself) {
    const std::vector<std::uint8_t> zeros(30, 0);
    const auto scrambled = ScrambleBytes(zeros);
    EXPECT_EQ(scrambled[0], 5);
    EXPECT_EQ(scrambled[1], 8);
    EXPECT_EQ(scrambled[27], 5);  // the key's last digit
    EXPECT_EQ(scrambled[28], 5);  // and round again
    EXPECT_EQ(scrambled[29], 8);
    const std::vector<std::uint8_t> text{'M', 'e', 's', 'h', 0xFF, 0x00};
    EXPECT_EQ(ScrambleBytes(ScrambleBytes(text)), text);
}

TEST(LogoTest, UnpacksToAPictureAndLeavesNoFileBehind) {
    const QStringList before = QDir::temp().entryList({"meshwright-logo-*"});
    QPixmap logo;
    ASSERT_EQ(CreateLogo(logo), 0);
    EXPECT_GT(logo.width(), 100);
    EXPECT_GT(logo.height(), 100);
    EXPECT_EQ(QDir::temp().entryList({"meshwright-logo-*"}), before);

    QTemporaryDir dir;
    const QString path = dir.filePath("logo.png");
    QFile stale(path);
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.write("old and longer than nothing at all");
    stale.close();
    ASSERT_TRUE(UnpackLogo(path));
    QFile unpacked(path);
    ASSERT_TRUE(unpacked.open(QIODevice::ReadOnly));
    EXPECT_TRUE(unpacked.readAll().startsWith("\x89PNG"));
}

TEST(HelpTest, TheManualIsFoundBesideTheProgramOrInItsShareFolder) {
    QTemporaryDir root;
    ASSERT_TRUE(QDir(root.path()).mkpath("bin"));
    const QString bin = root.filePath("bin");
    EXPECT_TRUE(FindHelpIndex(bin).isEmpty());
    ASSERT_TRUE(QDir(root.path()).mkpath("share/meshwright/help"));
    QFile(root.filePath("share/meshwright/help/index.html")).open(QIODevice::WriteOnly);
    EXPECT_TRUE(FindHelpIndex(bin).endsWith("share/meshwright/help/index.html"));
    ASSERT_TRUE(QDir(bin).mkpath("help"));
    QFile(QDir(bin).filePath("help/index.html")).open(QIODevice::WriteOnly);
    EXPECT_EQ(FindHelpIndex(bin), QDir(bin).filePath("help/index.html"));
    EXPECT_TRUE(MissingHelpMessage().startsWith("Could not find 'help/index.html'."));
}

TEST(ScaleDialogTest, TheChosenWayGivesThePercentage) {
    EXPECT_EQ(ScaleAmount(false, 3.0, 250.0, 5.0f), 250.0f);
    EXPECT_EQ(ScaleAmount(true, 10.0, 250.0, 5.0f), 200.0f);
    EXPECT_EQ(ScaleAmount(true, 10.0, 250.0, 0.0f), 100.0f);  // a model of radius 0

    frmScale dialog(5.0f);
    EXPECT_FALSE(dialog.radius().isEnabled());
    EXPECT_TRUE(dialog.percent().isEnabled());
    EXPECT_EQ(dialog.radius().value(), 5.0);
    EXPECT_EQ(dialog.radius().minimum(), 0.1);
    EXPECT_EQ(dialog.percent().maximum(), 10000.0);
    dialog.SetByRadius(true);
    EXPECT_TRUE(dialog.radius().isEnabled());
    EXPECT_FALSE(dialog.percent().isEnabled());
    dialog.reject();
    EXPECT_EQ(dialog.amount(), 100.0f);
}

}  // namespace
}  // namespace mw

namespace mw {
namespace {

TEST(ProgressDialogTest, ShowsEachReportWhileTheDataIsRead) {
    frmProgress progress;
    progress.Begin();
    EXPECT_TRUE(progress.isVisible());
    int percent = 140;
    ShowProgress(&progress, percent, "Reading d3.hog");
    EXPECT_EQ(percent, 100);
    EXPECT_EQ(progress.value(), 100);
    EXPECT_EQ(progress.text(), "Reading d3.hog");
    percent = 30;
    ShowProgress(&progress, percent, "");
    EXPECT_EQ(progress.value(), 30);
    EXPECT_EQ(progress.text(), "Reading d3.hog");  // an empty text keeps the line
    progress.End();
    EXPECT_FALSE(progress.isVisible());
}

}  // namespace
}  // namespace mw

namespace mw {
namespace {

TEST(HelpTest, EveryPageOfTheManualLinksToPagesThatExist) {
    const QDir help(MW_SOURCE_DIR "/docs/help");
    const QStringList pages = help.entryList({"*.html"});
    ASSERT_TRUE(pages.contains("index.html"));
    const QRegularExpression link(R"(href="([^"#:]+))");
    int links = 0;
    for (const QString& page : pages) {
        QFile file(help.filePath(page));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        for (auto it = link.globalMatch(text); it.hasNext(); ++links) {
            const QString target = it.next().captured(1);
            EXPECT_TRUE(help.exists(target))
                << page.toStdString() << " -> " << target.toStdString();
        }
    }
    EXPECT_GT(links, pages.size());
}

}  // namespace
}  // namespace mw
