#include "cli/model_picture.h"

#include <QPainter>
#include <cstdlib>
#include <filesystem>

#include "cli/cli.h"
#include "convert/texture_images.h"
#include "gamedata/install_paths.h"
#include "gamedata/settings.h"

namespace mw {

std::unique_ptr<QGuiApplication> MakeGuiApplication() {
    if (QGuiApplication::instance() != nullptr) return nullptr;
    if (std::getenv("DISPLAY") == nullptr && std::getenv("WAYLAND_DISPLAY") == nullptr &&
        std::getenv("QT_QPA_PLATFORM") == nullptr) {
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
    }
    static int argc = 1;
    static char name[] = "meshwright-cli";
    static char* argv[] = {name, nullptr};
    return std::make_unique<QGuiApplication>(argc, argv);
}

int ResolveGameDataOrEditorSettings(const GameDataOptions& options, Settings& settings,
                                    std::ostream& err) {
    const bool none = options.settingsFile.empty() && !options.d3 && !options.extra13 &&
                      !options.mission && !options.ogfPath;
    if (none) {
        std::error_code ec;
        const auto file = SettingsFilePath(ProgramDir());
        if (std::filesystem::exists(file, ec)) {
            GameDataOptions editor;
            editor.settingsFile = file.string();
            return ResolveGameData(editor, settings, err);
        }
    }
    return ResolveGameData(options, settings, err);
}

bool DrawingSession::Start(int width, int height, Settings& settings, std::ostream& err) {
    app = MakeGuiApplication();
    std::string error;
    if (!view.Create(width, height, error)) {
        err << error << "\n";
        return false;
    }
    gameData = NamesGameData(settings);
    if (gameData) ReadGameData(settings, data, err);
    return true;
}

LoadedTextures PrepareModel(OffscreenView& view, ModelData& model, const std::string& path,
                            GameData* data, const Settings& settings) {
    static const std::vector<std::uint32_t> missing = MakeMissingTexture(1);
    LoadedTextures loaded;
    view.MakeCurrent();
    if (data != nullptr) {
        LoadModelTextures(model, path, *data, settings, missing, view.renderer(), loaded,
                          DecodePictureFile);
        view.Load(model, &loaded, missing);
    } else {
        view.Load(model, nullptr, missing);
    }
    view.LoadGlow(data, settings);
    return loaded;
}

FrameInput ModelOnlyFrame(const ModelData& model) {
    FrameInput in = FittedFrame(model);
    in.display.ViewPoints = false;
    in.display.ShowAxisOverlay = false;
    in.display.ShowBackground = false;
    return in;
}

QImage FitIntoSquare(const QImage& picture, int size) {
    int left = picture.width(), top = picture.height(), right = -1, bottom = -1;
    for (int y = 0; y < picture.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(row[x]) == 0) continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    }
    QImage out(size, size, QImage::Format_ARGB32_Premultiplied);
    out.fill(Qt::transparent);
    if (right < 0) return out;
    const QRect visible(QPoint(left, top), QPoint(right, bottom));
    const int room = std::max(1, size - 2 * std::max(1, size / 32));
    const QSize fitted = visible.size().scaled(room, room, Qt::KeepAspectRatio);
    QPainter painter(&out);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(
        QRect(QPoint((size - fitted.width()) / 2, (size - fitted.height()) / 2), fitted), picture,
        visible);
    return out;
}

}  // namespace mw
