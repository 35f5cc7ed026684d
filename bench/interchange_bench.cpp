// glTF export against writing the model as OOF, and importing a large .glb against the glTF
// library alone reading it.
#include <benchmark/benchmark.h>
#include <tiny_gltf.h>

#include <cmath>
#include <filesystem>

#include <nlohmann/json.hpp>

#include "bench_models.h"
#include "convert/gltf_export.h"
#include "convert/model_import.h"
#include "convert/scene_keys.h"
#include "model/file_io.h"
#include "model/oof_writer.h"

namespace mw {
namespace {

// 100 parts of 500 faces: the 50,000-face model.
const ModelData& FiftyThousandFaces() {
    static const ModelData model = LargeModel(100, 500);
    return model;
}

void WriteModelOOF(benchmark::State& state) {
    ModelData m = FiftyThousandFaces();
    for (auto _ : state)
        benchmark::DoNotOptimize(WriteOOF(m).data());
}

void ExportGlb(benchmark::State& state) {
    const ModelData& m = FiftyThousandFaces();
    for (auto _ : state)
        benchmark::DoNotOptimize(ExportGLB(m, {}).bytes().data());
}

// The same two written to files, as the commands and the editor do.
void SaveModelOOF(benchmark::State& state) {
    ModelData m = FiftyThousandFaces();
    const auto path = std::filesystem::temp_directory_path() / "mw_bench_save.oof";
    for (auto _ : state)
        benchmark::DoNotOptimize(SaveOOF(m, path));
    std::filesystem::remove(path);
}

void ExportGlbFile(benchmark::State& state) {
    const ModelData& m = FiftyThousandFaces();
    const auto path = std::filesystem::temp_directory_path() / "mw_bench_export.glb";
    for (auto _ : state)
        benchmark::DoNotOptimize(ExportGLTF(m, {}, path));
    std::filesystem::remove(path);
}

// A .glb of 100,000 triangles as another program would write it: our export of a
// triangle model with the "descent3" extras taken out, so that the import builds everything.
const std::filesystem::path& LargeGlb() {
    static const std::filesystem::path path = [] {
        ModelData m = LargeModel(100, 1000);
        const GlbFile file = ExportGLB(m, {});
        const std::vector<std::uint8_t> glb(file.bytes().begin(), file.bytes().end());
        const std::uint32_t jsonLength = glb[12] | glb[13] << 8 | glb[14] << 16 | glb[15] << 24;
        auto doc = nlohmann::json::parse(glb.begin() + 20, glb.begin() + 20 + jsonLength);
        for (auto& node : doc["nodes"])
            node.erase("extras");
        std::string text = doc.dump();
        while (text.size() % 4 != 0)
            text += ' ';
        std::vector<std::uint8_t> out(glb.begin(), glb.begin() + 12);
        const auto put = [&](std::uint32_t v) {
            for (int i = 0; i < 4; ++i)
                out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
        };
        put(static_cast<std::uint32_t>(text.size()));
        put(0x4E4F534A);
        out.insert(out.end(), text.begin(), text.end());
        out.insert(out.end(), glb.begin() + 20 + jsonLength, glb.end());
        const std::uint32_t total = static_cast<std::uint32_t>(out.size());
        for (int i = 0; i < 4; ++i)
            out[8 + static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(total >> (8 * i));
        const auto p = std::filesystem::temp_directory_path() / "mw_bench_100k.glb";
        WriteFileReplacing(p, out);
        return p;
    }();
    return path;
}

void GltfLibraryAlone(benchmark::State& state) {
    const std::string path = LargeGlb().string();
    for (auto _ : state) {
        tinygltf::TinyGLTF loader;
        tinygltf::Model model;
        std::string error, warning;
        benchmark::DoNotOptimize(loader.LoadBinaryFromFile(&model, &error, &warning, path));
    }
}

void ImportGlb(benchmark::State& state) {
    const auto& path = LargeGlb();
    for (auto _ : state) {
        ImportResult r = ImportModel(path);
        if (r.Status != ImportStatus::Done || r.Exact) state.SkipWithError("import failed");
        benchmark::DoNotOptimize(r.Model.SubObjects.data());
    }
}

// Keys from an animation as Blender samples it: 30 parts, each turning and moving, a sample
// every frame for 30 frames (a turn of 90 degrees at a speed that changes, so that few
// samples merge).
void KeysFromSampledAnimation(benchmark::State& state) {
    std::vector<SceneChannel> turns(30), moves(30);
    for (int part = 0; part < 30; ++part) {
        SceneChannel& t = turns[static_cast<std::size_t>(part)];
        SceneChannel& m = moves[static_cast<std::size_t>(part)];
        t.Target = SceneChannel::Path::Rotation;
        m.Target = SceneChannel::Path::Translation;
        for (int f = 0; f <= 30; ++f) {
            const double eased = 0.5 - 0.5 * std::cos(3.14159265 * f / 30.0);
            const double half = 0.25 * 3.14159265 * eased;
            t.Times.push_back(static_cast<float>(f / 30.0));
            m.Times.push_back(static_cast<float>(f / 30.0));
            t.Values.insert(t.Values.end(), {0.0f, static_cast<float>(std::sin(half)), 0.0f,
                                             static_cast<float>(std::cos(half))});
            m.Values.insert(m.Values.end(),
                            {static_cast<float>(part), static_cast<float>(eased), 0.0f});
        }
    }
    const Transform identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    for (auto _ : state) {
        std::size_t keys = 0;
        for (int part = 0; part < 30; ++part) {
            const SubObjectKeys k = KeysFromChannels(
                &moves[static_cast<std::size_t>(part)], &turns[static_cast<std::size_t>(part)],
                {static_cast<float>(part), 0, 0}, {0, 0, 0, 1}, identity);
            keys += k.Pos.size() + k.Rot.size();
        }
        benchmark::DoNotOptimize(keys);
    }
}

BENCHMARK(WriteModelOOF)->Unit(benchmark::kMillisecond);
BENCHMARK(ExportGlb)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveModelOOF)->Unit(benchmark::kMillisecond);
BENCHMARK(ExportGlbFile)->Unit(benchmark::kMillisecond);
BENCHMARK(GltfLibraryAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(ImportGlb)->Unit(benchmark::kMillisecond);
BENCHMARK(KeysFromSampledAnimation)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace mw
