// Room import and export of large rooms. Each reading benchmark has a memory-copy
// counterpart over the same bytes, so that its time reads as a ratio to that floor.
#include <benchmark/benchmark.h>

#include <cstring>

#include "bench_models.h"
#include "convert/orf_reader.h"
#include "convert/orf_writer.h"
#include "model/byte_cursor.h"

namespace mw {
namespace {

// A square grid of quads, one connected piece. With `reversed` the faces run from the far
// corner back, so that a naive scan adds few faces per pass.
std::vector<std::uint8_t> GridRoom(int side, bool reversed) {
    ByteWriter w;
    const int vertices = (side + 1) * (side + 1);
    const int faces = side * side;
    w.i32(5);
    w.i32(12);
    w.i32(4);
    w.i32(vertices);
    w.i32(faces);
    w.i32(1);
    w.i32(vertices * 12);
    for (int y = 0; y <= side; ++y) {
        for (int x = 0; x <= side; ++x)
            w.vec3({static_cast<float>(x), 0, static_cast<float>(y)});
    }
    w.i32(4);
    w.i32(4 + 8);
    w.i32(1);
    w.raw("Rainbow Texture");
    w.u8(0);
    w.i32(2);
    w.i32(faces * (19 + 4 * 30));
    for (int i = 0; i < faces; ++i) {
        const int f = reversed ? faces - 1 - i : i;
        const int x = f % side, y = f / side;
        const int v = y * (side + 1) + x;
        w.u8(4);
        w.i32(4);
        w.vec3({0, 1, 0});
        w.u16(0);
        for (int c : {v, v + 1, v + side + 2, v + side + 1}) {
            w.u16(static_cast<std::uint16_t>(c));
            w.f32(0);
            w.f32(0);
            for (int k = 0; k < 5; ++k)
                w.u32(0);
        }
    }
    w.i32(3);
    w.i32(4);
    return w.release();
}

void ImportRoom(benchmark::State& state, bool reversed) {
    const auto bytes = GridRoom(static_cast<int>(state.range(0)), reversed);
    const GameNameTable names = GameNameTable::Builtin();
    for (auto _ : state) {
        ModelData m;
        if (importORF(m, bytes, names) != ResultCode::Success) state.SkipWithError("import failed");
        benchmark::DoNotOptimize(m.SubObjects.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
    state.counters["faces"] = static_cast<double>(state.range(0) * state.range(0));
}

void CopyRoomBytes(benchmark::State& state) {
    CopyBytesBenchmark(state, GridRoom(static_cast<int>(state.range(0)), false));
}

void ExportRoom(benchmark::State& state) {
    const auto bytes = GridRoom(static_cast<int>(state.range(0)), false);
    ModelData m;
    importORF(m, bytes, GameNameTable::Builtin());
    const std::string path = "/tmp/mw_bench_room.orf";
    for (auto _ : state) {
        const OrfExportResult r = SaveORF(m, path, {true, false, 1.0f});
        if (!r.Written) state.SkipWithError("export failed");
    }
    std::remove(path.c_str());
}

// 100 x 100 = 10,000 faces, and 170 x 170 = 28,900 (near the 32,768 vertex limit).
BENCHMARK(CopyRoomBytes)->Arg(100)->Arg(170)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ImportRoom, in_order, false)->Arg(100)->Arg(170)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ImportRoom, reversed, true)->Arg(100)->Arg(170)->Unit(benchmark::kMillisecond);
BENCHMARK(ExportRoom)->Arg(100)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace mw
