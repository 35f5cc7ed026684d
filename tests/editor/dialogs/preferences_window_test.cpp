// The Preferences command in the window: what follows the dialog's changes.
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <filesystem>
#include <fstream>

#include "editor/dialogs/preferences_dialog.h"
#include "editor/model_textures.h"
#include "support/editor_window.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

class PreferencesWindowTest : public EditorTest {
  protected:
    // The next Preferences command types these into the dialog's fields and presses OK.
    void AnswerWith(std::map<QString, QString> fields) {
        window_->SetPreferencesRunner([fields](frmPreferences& dialog) {
            dialog.show();
            for (const auto& [name, text] : fields)
                dialog.findChild<QLineEdit*>(name)->setText(text);
            if (const QString shot = ScreenshotPath("preferences.png"); !shot.isEmpty())
                dialog.grab().save(shot);
            QTest::mouseClick(&dialog.okButton(), Qt::LeftButton);
        });
    }
    test::TempDir dir_{"preferences-window"};
};

TEST_F(PreferencesWindowTest, ACompilerEnablesImportAndABackgroundIsShown) {
    EXPECT_FALSE(Action("mnuFileImportP3D")->isEnabled());
    std::ofstream(dir_ / "PofGen.exe") << "MZ";
    QImage picture(64, 32, QImage::Format_RGB32);
    picture.fill(Qt::darkCyan);
    ASSERT_TRUE(picture.save(QString::fromStdString((dir_ / "sky.bmp").string())));
    AnswerWith({{"txtPathPofgen", QString::fromStdString((dir_ / "PofGen.exe").string())},
                {"txtBackground", QString::fromStdString((dir_ / "sky.bmp").string())}});
    Action("mnuFilePreferences")->trigger();
    EXPECT_TRUE(Action("mnuFileImportP3D")->isEnabled());
    EXPECT_TRUE(viewport().renderer().BackgroundLoaded());
    EXPECT_TRUE(Action("mnuViewBackground")->isEnabled());
    EXPECT_TRUE(prompts_.questions.isEmpty());  // no game-data path changed

    // The picture taken away again.
    AnswerWith({{"txtBackground", ""}});
    Action("mnuFilePreferences")->trigger();
    EXPECT_FALSE(viewport().renderer().BackgroundLoaded());
    EXPECT_EQ(settings_.BackgroundImage, "");
}

TEST_F(PreferencesWindowTest, NewGameDataPathsAreReadAndTexturesReloadedOnYes) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    const int models = Part<MainActions>().hogList().count();
    ASSERT_GT(models, 0);
    QSignalSpy reloaded(&Part<ModelTextures>(), &ModelTextures::texturesChanged);
    prompts_.answers = {QMessageBox::No, QMessageBox::Yes};

    AnswerWith({{"txtD3Path", ""}});
    Action("mnuFilePreferences")->trigger();
    EXPECT_EQ(prompts_.questions, QStringList{"Reload Model Textures?"});
    EXPECT_EQ(Part<MainActions>().hogList().count(), 0);  // the archive is gone from the list
    EXPECT_EQ(reloaded.count(), 0);                       // No

    AnswerWith({{"txtD3Path", MW_SOURCE_DIR "/samples/gamedata/d3.hog"}});
    Action("mnuFilePreferences")->trigger();
    EXPECT_EQ(prompts_.questions.size(), 2);
    EXPECT_EQ(Part<MainActions>().hogList().count(), models);
    EXPECT_EQ(reloaded.count(), 1);
    EXPECT_EQ(settings_.D3HogPath, MW_SOURCE_DIR "/samples/gamedata/d3.hog");
}

}  // namespace
}  // namespace mw
