// Contact sheets and thumbnails through meshwright-cli, headless (Mesa's surfaceless EGL when
// no display is set): a sheet of 50 models against the baseline of drawing one of them
// with `render`, in the same run.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <sstream>

#include "bench_models.h"
#include "cli/cli.h"
#include "model/geometry.h"
#include "model/oof_writer.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

const std::string kHog = MW_SOURCE_DIR "/samples/gamedata/d3.hog";

// 50 models: the sample, and generated ones of 2,000 to 20,000 faces.
const fs::path& Folder() {
    static const fs::path folder = [] {
        const fs::path dir = fs::temp_directory_path() / "mw_sheet_bench";
        fs::remove_all(dir);
        fs::create_directories(dir);
        for (int i = 0; i < 50; ++i) {
            char name[32];
            std::snprintf(name, sizeof name, "model_%02d.oof", i);
            if (i % 5 == 0) {
                fs::copy_file(MW_SOURCE_DIR "/samples/ship.oof", dir / name);
                continue;
            }
            ModelData m = LargeModel(4 + i % 8, 500 + 40 * i);
            RebuildSaveOrder(m);
            SaveOOF(m, dir / name);
        }
        return dir;
    }();
    return folder;
}

int Run(const std::vector<std::string>& args) {
    std::ostringstream out, err;
    return RunCli(args, out, err);
}

void BM_RenderOneModel(benchmark::State& state) {
    const std::string png = (fs::temp_directory_path() / "mw_bench_one.png").string();
    const std::string model = (Folder() / "model_07.oof").string();
    for (auto _ : state) {
        if (Run({"render", model, "--png", png, "--size", "320x320", "--d3hog", kHog}) != 0)
            state.SkipWithError("render failed");
    }
}
BENCHMARK(BM_RenderOneModel)->Unit(benchmark::kMillisecond);

void BM_SheetOf50Models(benchmark::State& state) {
    const std::string png = (fs::temp_directory_path() / "mw_bench_sheet.png").string();
    for (auto _ : state) {
        if (Run({"sheet", Folder().string(), "--png", png, "--size", "160", "--d3hog", kHog}) != 0)
            state.SkipWithError("sheet failed");
    }
    state.counters["models"] = 50;
}
BENCHMARK(BM_SheetOf50Models)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
}  // namespace mw
