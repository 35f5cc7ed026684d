// Frames per second of the renderer, offscreen, for the sample and a large model in each
// view type. Needs a display (bench/run.sh uses xvfb-run when there is none).
#include <benchmark/benchmark.h>
#include <QGuiApplication>

#include "bench_models.h"
#include "model/file_io.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "view/gl.h"
#include "view/offscreen.h"

namespace mw {
namespace {

OffscreenView& View() {
    static OffscreenView view;
    static bool made = [] {
        std::string error;
        return view.Create(800, 600, error);
    }();
    (void)made;
    return view;
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
void LargeModelFrames(benchmark::State& state) {
    Frames(state, Large());
}

// 0 wireframe, 1 flat, 2 smooth, 3 textured.
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
    return 0;
}
