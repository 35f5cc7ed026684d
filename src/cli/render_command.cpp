#include <ostream>

#include "cli/cli.h"
#include "cli/game_data_options.h"
#include "cli/model_picture.h"
#include "gamedata/file_names.h"
#include "gamedata/ini_file.h"
#include "gamedata/texture_loader.h"
#include "view/animation.h"
#include "view/background.h"
#include "view/offscreen.h"

namespace mw {
namespace {

constexpr const char* kRenderUsage =
    "Usage: meshwright-cli render MODEL --png OUT [--size WxH] [--view wireframe|flat|smooth|"
    "textured]\n"
    "                             [--angles X,Y] [--frame F] [--stereo] [--points] [--normals]\n"
    "                             [--highlight S] [--time SECONDS] [game data]\n"
    "Draws one frame of the model offscreen, with the camera fitted to it, and writes it as\n"
    "PNG. Textures come from the game data; without game data each texture shows the\n"
    "placeholder. --time runs the animation clock that long first (animated and sliding\n"
    "textures, rotators), as the editor's timer would.\n";

struct RenderOptions {
    std::string model, png;
    GameDataOptions gameData;
    int width = 640, height = 480;
    ViewType view = ViewType::Textured;
    std::optional<std::pair<float, float>> angles;
    float frame = 0.0f;
    float time = 0.0f;
    bool stereo = false, points = false, normals = false;
    int highlight = -1;
};

bool ParseSize(const std::string& text, int& w, int& h) {
    const auto x = text.find('x');
    return x != std::string::npos && ParseInt(text.substr(0, x), w) &&
           ParseInt(text.substr(x + 1), h) && w > 0 && h > 0 && w <= 8192 && h <= 8192;
}

bool Parse(const std::vector<std::string>& args, RenderOptions& o) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool value = i + 1 < args.size();
        if (a == "--png" && value) {
            o.png = args[++i];
        } else if (a == "--size" && value) {
            if (!ParseSize(args[++i], o.width, o.height)) return false;
        } else if (a == "--view" && value) {
            const std::string v = args[++i];
            if (v == "wireframe")
                o.view = ViewType::Wireframe;
            else if (v == "flat")
                o.view = ViewType::FlatSolid;
            else if (v == "smooth")
                o.view = ViewType::SmoothSolid;
            else if (v == "textured")
                o.view = ViewType::Textured;
            else
                return false;
        } else if (a == "--angles" && value) {
            const std::string v = args[++i];
            const auto comma = v.find(',');
            if (comma == std::string::npos) return false;
            const auto x = ParseFloatText(v.substr(0, comma));
            const auto y = ParseFloatText(v.substr(comma + 1));
            if (!x || !y) return false;
            o.angles = std::make_pair(*x, *y);
        } else if (a == "--frame" && value) {
            const auto f = ParseFloatText(args[++i]);
            if (!f) return false;
            o.frame = *f;
        } else if (a == "--time" && value) {
            const auto t = ParseFloatText(args[++i]);
            if (!t || *t < 0.0f || *t > 3600.0f) return false;
            o.time = *t;
        } else if (a == "--highlight" && value) {
            if (!ParseInt(args[++i], o.highlight)) return false;
        } else if (TakeGameDataOption(args, i, o.gameData)) {
        } else if (a == "--stereo") {
            o.stereo = true;
        } else if (a == "--points") {
            o.points = true;
        } else if (a == "--normals") {
            o.normals = true;
        } else if (!a.starts_with("-") && o.model.empty()) {
            o.model = a;
        } else {
            return false;
        }
    }
    return !o.model.empty() && !o.png.empty();
}

}  // namespace

int RenderCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kRenderUsage << kGameDataUsage;
        return 0;
    }
    RenderOptions o;
    if (!Parse(args, o)) {
        err << kRenderUsage << kGameDataUsage;
        return kExitUsage;
    }
    ModelData model;
    if (const int status = LoadModelFile(o.model, model, err)) return status;

    Settings settings;
    if (const int status = ResolveGameData(o.gameData, settings, err)) return status;

    DrawingSession session;
    if (!session.Start(o.width, o.height, settings, err)) return kExitCantCreate;
    OffscreenView& view = session.view;
    LoadedTextures loaded = PrepareModel(view, model, o.model, session.gameDataOrNull(), settings);
    if (!settings.BackgroundImage.empty()) {
        if (const auto picture = LoadBackgroundPicture(settings.BackgroundImage)) {
            view.MakeCurrent();
            view.renderer().UploadBackground(&*picture);
        } else {
            err << "Error reading " << FileNameOf(settings.BackgroundImage) << "\n";
        }
    }

    FrameInput in = FittedFrame(model);
    in.display.Type = o.view;
    in.display.ThreeD = o.stereo;
    in.display.ViewPoints = o.points;
    in.display.ViewNormals = o.normals;
    in.curFrame = o.frame;
    in.selection.hiliteSOBJ = o.highlight;
    if (o.angles) {
        in.camera.AngleX = o.angles->first;
        in.camera.AngleY = o.angles->second;
    }
    view.MakeCurrent();
    AdvanceView(view.renderer(), model, loaded, in.viewAngles, o.time, settings.TextureAnimation,
                settings.RotatorAnimation);
    const QImage image = view.Render(model, in);
    if (!image.save(QString::fromStdString(o.png), "PNG")) {
        err << "Error writing " << o.png << "\n";
        return kExitCantCreate;
    }
    return 0;
}

}  // namespace mw
