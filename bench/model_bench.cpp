// Reading and writing a large model, and the work that follows a load.
#include <benchmark/benchmark.h>

#include <cstring>

#include "bench_models.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"

namespace mw {
namespace {

// 100 sub-objects of 500 triangles: 50,000 faces.
const std::vector<std::uint8_t>& LargeModelBytes() {
    static const std::vector<std::uint8_t> bytes = [] {
        ModelData m = LargeModel(100, 500);
        return WriteOOF(m);
    }();
    return bytes;
}

void CopyModelBytes(benchmark::State& state) {
    CopyBytesBenchmark(state, LargeModelBytes());
}

void ReadModel(benchmark::State& state) {
    const auto& bytes = LargeModelBytes();
    for (auto _ : state) {
        ModelData m;
        if (readOOF(m, bytes) != ResultCode::Success) state.SkipWithError("read failed");
        benchmark::DoNotOptimize(m.SubObjects.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
    state.counters["faces"] = 50000;
}

void WriteModel(benchmark::State& state) {
    ModelData m;
    readOOF(m, LargeModelBytes());
    for (auto _ : state) {
        auto bytes = WriteOOF(m);
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetBytesProcessed(
        static_cast<std::int64_t>(state.iterations() * LargeModelBytes().size()));
}

void DrawOrder(benchmark::State& state) {
    ModelData m;
    readOOF(m, LargeModelBytes());
    for (auto _ : state)
        CreatePushPop(m);
}

void BoxAndRadius(benchmark::State& state) {
    ModelData m;
    readOOF(m, LargeModelBytes());
    CreatePushPop(m);
    for (auto _ : state)
        MoveSOBJ(m);
}

void VertexNormals(benchmark::State& state) {
    ModelData m;
    readOOF(m, LargeModelBytes());
    for (auto _ : state)
        RecalcVertexNormals(m);
}

BENCHMARK(CopyModelBytes)->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadModel)->Unit(benchmark::kMicrosecond);
BENCHMARK(WriteModel)->Unit(benchmark::kMicrosecond);
BENCHMARK(DrawOrder)->Unit(benchmark::kMicrosecond);
BENCHMARK(BoxAndRadius)->Unit(benchmark::kMicrosecond);
BENCHMARK(VertexNormals)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace mw
