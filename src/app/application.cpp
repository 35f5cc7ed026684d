#include "app/application.h"

#include <QApplication>
#include <QMessageBox>
#include <filesystem>

#include "app/logo.h"
#include "editor/actions.h"
#include "editor/dialogs/progress_dialog.h"
#include "editor/viewport.h"
#include "view/offscreen.h"

namespace mw {
namespace {

class MessageBoxes : public MessageSink {
  public:
    explicit MessageBoxes(QWidget* parent) : parent_(parent) {}
    void Information(const std::string& text) override {
        QMessageBox::information(parent_, "Meshwright", QString::fromStdString(text));
    }

  private:
    QWidget* parent_;
};

}  // namespace

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
    if (!window_->viewport().isValid()) {
        QMessageBox::critical(nullptr, "Meshwright", "Error initializing OpenGL Window!");
        return false;
    }
    // The preferences dialog opens here when d3.hog is missing, once it exists.

    // The game's archives and tables, behind the progress bar.
    frmProgress progress(window_.get());
    MessageBoxes messages(window_.get());
    game_.Hog.ReadHOGs(settings_, &progress);
    game_.Gam.ReadGAMs(game_.Hog, settings_, &progress, &messages);
    bool anyLoaded = false;
    for (const HogSlot& slot : game_.Hog.Slots)
        anyLoaded = anyLoaded || slot.Loaded;
    if (anyLoaded) window_->actions().PopulateHOGlist();
    window_->viewport().LoadEffects();
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
