#include "editor/game_test.h"

#include <QFileInfo>

#include "editor/document.h"
#include "editor/file_commands.h"
#include "editor/prompts.h"
#include "gamedata/settings.h"

namespace mw {

std::optional<PlaySetup> PrepareTestInGame(Document& doc, FileCommands& files,
                                           const Settings& settings, Prompts& prompts,
                                           QWidget* parent) {
    if (settings.GameProgram.empty()) {
        prompts.Message(parent, QString::fromStdString(NoGameProgramMessage()),
                        PromptIcon::Exclamation);
        return std::nullopt;
    }
    const QFileInfo mission(QString::fromStdString(settings.MN3GAMPath));
    if (mission.suffix().compare("mn3", Qt::CaseInsensitive) != 0 || !mission.isFile()) {
        prompts.Message(parent,
                        "Test in Game plays the mission archive (.mn3) named under File > "
                        "Preferences > \"Custom MN3/HOG, GAM File\". File > Package for Game... "
                        "makes one from the model.",
                        PromptIcon::Exclamation);
        return std::nullopt;
    }
    if (doc.hasModel()) {
        if (doc.isModified() || doc.NeedsName()) {
            const auto answer = prompts.Ask(
                parent, "Save " + doc.ModelTitle() + " before testing it in the game?",
                QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, PromptIcon::Question);
            if (answer == QMessageBox::Cancel) return std::nullopt;
            if (answer == QMessageBox::Yes && !files.Save()) return std::nullopt;
        }
        const std::filesystem::path model = doc.ModelPath().toStdString();
        const MissionCopy copy = CompareMissionCopy(mission.filePath().toStdString(), model);
        if ((copy == MissionCopy::Differs || copy == MissionCopy::Missing) && !doc.NeedsName()) {
            const QString name = QFileInfo(doc.ModelPath()).fileName();
            const QString text = copy == MissionCopy::Differs
                                     ? "The mission's " + name +
                                           " is not the saved model. Put the saved model "
                                           "into " +
                                           mission.fileName() + " first?"
                                     : mission.fileName() + " holds no " + name +
                                           ". Put the saved model into it first?";
            const auto answer =
                prompts.Ask(parent, text, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
                            PromptIcon::Question);
            if (answer == QMessageBox::Cancel) return std::nullopt;
            if (answer == QMessageBox::Yes) {
                const std::string error = PutIntoMission(mission.filePath().toStdString(), model);
                if (!error.empty()) {
                    prompts.Message(parent, QString::fromStdString(error), PromptIcon::Exclamation);
                    return std::nullopt;
                }
            }
        }
    }
    PlaySetup setup;
    setup.Program = settings.GameProgram;
    if (!settings.D3HogPath.empty())
        setup.GameDir = std::filesystem::path(settings.D3HogPath).parent_path();
    setup.Mission = mission.filePath().toStdString();
    setup.Scratch = DefaultPlayFolder();
    return setup;
}

}  // namespace mw
