// Game data: archive directories, GAM tables, image decoding and texture resolution.
#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>

#include "bench_models.h"
#include "gamedata/gam_table.h"
#include "gamedata/texture_loader.h"
#include "gamedata_writers.h"
#include "model/file_io.h"

namespace mw {
namespace {

std::vector<std::pair<std::string, Bytes>> ArchiveFiles(int count, const char* prefix,
                                                        bool animations = true) {
    std::vector<std::pair<std::string, Bytes>> files;
    for (int i = 0; i < count; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "%s%05d.%s", prefix, i,
                      animations && i % 3 == 0 ? "oaf" : "ogf");
        files.emplace_back(name, Bytes{1, 2, 3, 4});
    }
    return files;
}

const Bytes& BigArchive() {
    static const Bytes bytes = WriteHOG(ArchiveFiles(5000, "tex"));
    return bytes;
}

const Bytes& BigTables() {
    static const Bytes bytes = [] {
        GamWriter w;
        for (int i = 0; i < 5000; ++i) {
            w.texture({"Texture " + std::to_string(i), "tex" + std::to_string(i) + ".ogf", 1, 0, 0,
                       0, 0});
        }
        for (int i = 0; i < 1000; ++i) {
            w.object(ObjectPage("Object " + std::to_string(i),
                                {"obj" + std::to_string(i) + ".oof", "", ""}, 1));
        }
        return w.bytes();
    }();
    return bytes;
}

void CopyArchiveDirectory(benchmark::State& state) {
    const Bytes directory(BigArchive().begin(), BigArchive().begin() + 68 + 48 * 5000);
    CopyBytesBenchmark(state, directory);
}

void ReadArchiveDirectory(benchmark::State& state) {
    // The directory as ReadHOGs takes it: read, indexed into a slot, sorted for lookups.
    for (auto _ : state) {
        std::vector<HogDirectoryEntry> entries;
        ReadHogEntries(BigArchive(), entries);
        clsHOG hog;
        hog.AddEntries(entries, 1, nullptr);
        hog.CloseSlot(1, 0, 0);
        benchmark::DoNotOptimize(hog.Textures.data());
    }
    state.counters["entries"] = 5000;
}

void CopyTables(benchmark::State& state) {
    CopyBytesBenchmark(state, BigTables());
}

void ReadTables(benchmark::State& state) {
    for (auto _ : state) {
        clsGAM gam;
        gam.ReadGamTable(BigTables(), 0, 1, nullptr);
        if (gam.Textures.size() != 5000 || gam.Objects.size() != 1000) state.SkipWithError("pages");
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * BigTables().size()));
    state.counters["pages"] = 6000;
}

// Reading a table: every page's fields checked (a page's record is made when first asked
// for); the target is at most 50 times the copy of the same bytes.
void ReadTablePages(benchmark::State& state) {
    for (auto _ : state) {
        std::string error;
        const auto table = ReadGamPages(BigTables(), error);
        if (!table || table->Pages.size() != 6000) state.SkipWithError("pages");
        benchmark::DoNotOptimize(table);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * BigTables().size()));
}

// Reading a table and then every page's record (as gam dump does), for comparison.
void ReadTableRecords(benchmark::State& state) {
    for (auto _ : state) {
        std::string error;
        const auto table = ReadGamPages(BigTables(), error);
        std::size_t named = 0;
        for (const TablePage& page : table->Pages)
            named += !page.Name().empty();
        if (named != 6000) state.SkipWithError("records");
        benchmark::DoNotOptimize(named);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * BigTables().size()));
}

// Every page written anew from its fields (as after editing each); at most 50 times the copy.
void WriteTablePages(benchmark::State& state) {
    std::string error;
    GamTable table = *ReadGamPages(BigTables(), error);
    for (auto _ : state) {
        std::size_t total = 0;
        for (const TablePage& page : table.Pages)
            total += EncodePage(page.Record()).size();
        if (total != BigTables().size()) state.SkipWithError("sizes");
        benchmark::DoNotOptimize(total);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * BigTables().size()));
}

RgbaImage Noise(int w, int h, int seed) {
    RgbaImage img{w, h, {}};
    std::uint32_t x = 2463534242u + static_cast<std::uint32_t>(seed);
    for (int i = 0; i < w * h; ++i) {
        // Runs of a few equal pixels, as real textures have.
        if (i % 4 == 0) {
            x ^= x << 13;
            x ^= x >> 17;
            x ^= x << 5;
        }
        img.Pixels.push_back(x | 0xFF000000u);
    }
    return img;
}

void DecodeImage(benchmark::State& state) {
    const auto type = static_cast<std::uint8_t>(state.range(0));
    const Bytes bytes = WriteOGF(Noise(256, 256, 1), {type, 32, true, 1, "bench", 0});
    clsOGF ogf;
    for (auto _ : state) {
        ByteReader r(bytes);
        if (ogf.ReadOGF(r) != OgfStatus::Ok) state.SkipWithError("decode failed");
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * 256 * 256));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
}

void DecodeAnimation(benchmark::State& state) {
    std::vector<RgbaImage> frames;
    for (int f = 0; f < 30; ++f)
        frames.push_back(Noise(64, 64, f));
    const Bytes bytes = WriteOAF(frames, {122, 32, true, 3, "anim", 0});
    clsOGF ogf;
    for (auto _ : state) {
        ByteReader r(bytes);
        TextureSlot slot;
        FrameStore store;
        if (ogf.ReadOAF(r, slot, store) != OgfStatus::Ok) state.SkipWithError("decode failed");
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * 30));
}

class NullUploader : public TextureUploader {
  public:
    void AllocModelTextures(int) override {}
    void UploadModelTexture(int, int, int, const std::uint32_t* pixels) override {
        benchmark::DoNotOptimize(pixels);
    }
};

void ResolveTextures(benchmark::State& state) {
    // Three archives of 2,000 entries each; the model's 50 textures spread over them.
    const std::filesystem::path dir = std::filesystem::temp_directory_path() / "mw_bench_game";
    std::filesystem::create_directories(dir);
    const Bytes image = WriteOGF(Noise(64, 64, 3), {122, 32, true, 1, "t", 0});
    for (const char* archive : {"d3.hog", "Extra13.hog", "mission.mn3"}) {
        auto files = ArchiveFiles(2000,
                                  archive[0] == 'd'   ? "a"
                                  : archive[0] == 'E' ? "b"
                                                      : "c",
                                  false);
        for (auto& f : files)
            f.second = image;
        WriteFileReplacing(dir / archive, WriteHOG(files));
    }
    Settings settings;
    settings.D3HogPath = (dir / "d3.hog").string();
    settings.MN3GAMPath = (dir / "mission.mn3").string();
    DeriveArchivePaths(settings);
    GameData data;
    data.Hog.ReadHOGs(settings, nullptr);
    ModelData model;
    for (int t = 0; t < 50; ++t) {
        char name[16];
        std::snprintf(name, sizeof name, "%c%05d", "abc"[t % 3], 1 + 40 * t);
        model.Textures.push_back({"", name, name});
    }
    const auto missing = MakeMissingTexture(1);
    NullUploader uploader;
    for (auto _ : state) {
        LoadedTextures loaded;
        LoadModelTextures(model, "/m/x.oof", data, settings, missing, uploader, loaded);
        for (const auto& r : loaded.Resolved) {
            if (!r.Decoded) state.SkipWithError("a texture was not resolved");
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * 50));
    std::filesystem::remove_all(dir);
}

BENCHMARK(CopyArchiveDirectory)->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadArchiveDirectory)->Unit(benchmark::kMicrosecond);
BENCHMARK(CopyTables)->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadTables)->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadTablePages)->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadTableRecords)->Unit(benchmark::kMicrosecond);
BENCHMARK(WriteTablePages)->Unit(benchmark::kMicrosecond);
BENCHMARK(DecodeImage)
    ->Arg(2)
    ->Arg(10)
    ->Arg(121)
    ->Arg(122)
    ->Arg(123)
    ->Arg(124)
    ->Arg(127)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(DecodeAnimation)->Unit(benchmark::kMicrosecond);
BENCHMARK(ResolveTextures)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace mw
