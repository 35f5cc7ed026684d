#include "app/application.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <filesystem>

#include "editor/viewport.h"
#include "view/offscreen.h"

namespace mw {
namespace {

class MessageBoxes : public MessageSink {
  public:
    void Information(const std::string& text) override {
        QMessageBox::information(nullptr, "Meshwright", QString::fromStdString(text));
    }
};

}  // namespace

void PrepareApplication() {
    ApplyViewFormat();
}

Application::Application(const std::string& programDir) : ini_(SettingsFilePath(programDir)) {}

Application::~Application() = default;

bool Application::Start() {
    ini_.Load();
    LoadSettings(ini_, settings_);
    DeriveArchivePaths(settings_);
    game_.Hog.ReadHOGs(settings_, nullptr);
    MessageBoxes messages;
    game_.Gam.ReadGAMs(game_.Hog, settings_, nullptr, &messages);
    window_ = std::make_unique<frmOOF>(oof_, game_, settings_);
    window_->setMinimumSize(window_->size());
    window_->show();
    QCoreApplication::processEvents();
    if (!window_->viewport().isValid()) {
        QMessageBox::warning(nullptr, "Meshwright", "Error initializing OpenGL Window!");
        return false;
    }
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
