#include "app/application.h"

#include <QApplication>
#include <QMessageBox>
#include <filesystem>

#include "app/logo.h"
#include "convert/pofgen.h"
#include "editor/dialogs/preference_fields.h"
#include "editor/dialogs/preferences_dialog.h"
#include "view/offscreen.h"

namespace mw {

void PrepareApplication() {
    ApplyViewFormat();
    // The texture preview draws the viewport's textures from its own context.
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
}

Application::Application(const std::string& programDir, Prompts* prompts)
    : programDir_(programDir), prompts_(prompts), ini_(SettingsFilePath(programDir)) {}

Application::~Application() = default;

bool Application::Start() {
    ini_.Load();
    LoadSettings(ini_, settings_);
    DeriveArchivePaths(settings_);
    BuildPofgenSwitches(settings_);
    if (CreateLogo(logo_) != 0) {
        QMessageBox::warning(nullptr, "Meshwright",
                             "Failure reading Resource File - Please Re-Install program.");
        return false;
    }
    window_ = std::make_unique<frmOOF>(oof_, game_, settings_, logo_, prompts_);
    window_->SetProgramDir(QString::fromStdString(programDir_));
    window_->show();
    window_->setMinimumSize(window_->size());
    QCoreApplication::processEvents();
    if (!window_->ViewportReady()) {
        QMessageBox::critical(nullptr, "Meshwright", "Error initializing OpenGL Window!");
        return false;
    }
    // Without the game's main archive the user is asked for the paths first.
    if (ExistingD3Hog(QString::fromStdString(settings_.D3HogPath)).isEmpty()) {
        frmPreferences preferences(settings_, window_->prompts(), window_.get());
        preferences.exec();
        window_->repaint();
    }
    window_->ReadGameData();
    window_->LoadEffects();
    // What an earlier session could not save, offered once the window is there.
    window_->OfferRecovery();
    return true;
}

void Application::Stop() {
    window_->StoreSettings();
    std::error_code ec;
    std::filesystem::create_directories(ini_.path().parent_path(), ec);
    SaveSettings(ini_, settings_, [](const std::string& p) {
        std::error_code e;
        return std::filesystem::exists(p, e);
    });
    ini_.Save();
    window_.reset();
}

}  // namespace mw
