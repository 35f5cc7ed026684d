// Frames per second of the renderer, offscreen, for the sample and a large model in each
// view type. Needs a display (bench/run.sh uses xvfb-run when there is none).
#include <benchmark/benchmark.h>
#include <QGuiApplication>

#include <filesystem>
#include <memory>

#include "bench_models.h"
#include "gamedata/texture_loader.h"
#include "gamedata_writers.h"
#include "model/file_io.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "view/gl.h"
#include "view/offscreen.h"

namespace mw {
namespace {

// The one view, made on first use and released by main while the application still exists:
// its context cannot outlive the application.
std::unique_ptr<OffscreenView>& ViewSlot() {
    static std::unique_ptr<OffscreenView> view;
    return view;
}

OffscreenView& View() {
    auto& view = ViewSlot();
    if (!view) {
        view = std::make_unique<OffscreenView>();
        std::string error;
        view->Create(800, 600, error);
    }
    return *view;
}

const ModelData& Sample() {
    static const ModelData model = [] {
        ModelData m;
        readOOF(m, *ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof"));
        CreatePushPop(m);
        return m;
    }();
    return model;
}

const ModelData& Large() {
    static const ModelData model = LargeModel(100, 250);  // 25,000 faces
    return model;
}

void Frames(benchmark::State& state, const ModelData& model) {
    OffscreenView& view = View();
    view.Load(model, nullptr, MakeMissingTexture(1));
    FrameInput in = FittedFrame(model);
    in.display.Type = static_cast<ViewType>(state.range(0));
    in.display.ViewPoints = false;
    const int builds = view.renderer().ListBuilds();
    for (auto _ : state) {
        in.camera.AngleY += 1.0f;
        view.renderer().RenderFrame(model, in);
        glFinish();
    }
    if (view.renderer().ListBuilds() != builds) state.SkipWithError("lists were rebuilt");
    state.counters["fps"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void SampleFrames(benchmark::State& state) {
    Frames(state, Sample());
}
// From the model file's bytes to its first textured frame: read, draw order, texture
// resolution, decoding and upload, display lists, one frame. The game data is indexed once
// beforehand, as the editor does at start-up.
void FirstTexturedFrame(benchmark::State& state, const std::vector<std::uint8_t>& file,
                        const Settings& settings) {
    static GameData data;
    Settings s = settings;
    data.Hog.ReadHOGs(s, nullptr);
    data.Gam.ReadGAMs(data.Hog, s, nullptr, nullptr);
    OffscreenView& view = View();
    const auto missing = MakeMissingTexture(1);
    for (auto _ : state) {
        ModelData model;
        if (readOOF(model, file) != ResultCode::Success) state.SkipWithError("read failed");
        CreatePushPop(model);
        view.MakeCurrent();
        LoadedTextures loaded;
        LoadModelTextures(model, "m.oof", data, s, missing, view.renderer(), loaded);
        view.Load(model, &loaded, missing);
        FrameInput in = FittedFrame(model);
        view.renderer().RenderFrame(model, in);
        glFinish();
        for (const auto& r : loaded.Resolved) {
            if (!r.Decoded) state.SkipWithError("a texture was not resolved");
        }
    }
}

void SampleFirstFrame(benchmark::State& state) {
    Settings settings;
    settings.D3HogPath = MW_SOURCE_DIR "/samples/gamedata/d3.hog";
    DeriveArchivePaths(settings);
    FirstTexturedFrame(state, *ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof"), settings);
}

void FortyTexturesFirstFrame(benchmark::State& state) {
    // An archive of 5,000 textures of 64 x 64; the model uses 40 of them.
    const std::filesystem::path dir = std::filesystem::temp_directory_path() / "mw_bench_first";
    std::filesystem::create_directories(dir);
    RgbaImage image{64, 64, {}};
    for (std::uint32_t i = 0; i < 64 * 64; ++i)
        image.Pixels.push_back(0xFF000000u | (i * 2654435761u >> 8));
    const Bytes ogf = WriteOGF(image, {122, 32, true, 1, "t", 0});
    std::vector<std::pair<std::string, Bytes>> files;
    for (int i = 0; i < 5000; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "tex%04d.ogf", i);
        files.emplace_back(name, ogf);
    }
    WriteFileReplacing(dir / "d3.hog", WriteHOG(files));
    ModelData model = LargeModel(40, 200);
    model.Textures.clear();
    for (int t = 0; t < 40; ++t) {
        char name[16];
        std::snprintf(name, sizeof name, "tex%04d", t * 120);
        model.Textures.push_back({"", name, name});
    }
    for (SubObject& sub : model.SubObjects) {
        for (std::size_t f = 0; f < sub.Faces.size(); ++f) {
            sub.Faces[f].Textured = 1;
            sub.Faces[f].TextureIndex =
                static_cast<int>((f + static_cast<std::size_t>(sub.Index)) % 40);
        }
    }
    Settings settings;
    settings.D3HogPath = (dir / "d3.hog").string();
    DeriveArchivePaths(settings);
    FirstTexturedFrame(state, WriteOOF(model), settings);
    std::filesystem::remove_all(dir);
}

void LargeModelFrames(benchmark::State& state) {
    Frames(state, Large());
}

// 0 wireframe, 1 flat, 2 smooth, 3 textured.
BENCHMARK(SampleFirstFrame)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FortyTexturesFirstFrame)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(SampleFrames)->DenseRange(0, 3)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(LargeModelFrames)->DenseRange(0, 3)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace mw

int main(int argc, char** argv) {
    mw::ApplyViewFormat();
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    mw::ViewSlot().reset();
    return 0;
}
