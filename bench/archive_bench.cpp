// Writing textures and archives: encoding a 256 x 256 PNG with its mip levels (reading the
// PNG included) against decoding the image it gives; an archive of 1,000 files of 20 KB against
// copying the same bytes into one file.
#include <benchmark/benchmark.h>
#include <QImage>

#include <filesystem>
#include <random>

#include "convert/texture_images.h"
#include "gamedata/hog_writer.h"
#include "gamedata/ogf.h"
#include "gamedata/ogf_writer.h"
#include "model/file_io.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

fs::path BenchDir() {
    static const fs::path dir = [] {
        fs::path d = fs::temp_directory_path() / "mw-archive-bench";
        fs::create_directories(d);
        return d;
    }();
    return dir;
}

// A 256 x 256 picture with smooth areas and noise, as texture art is.
const std::string& PicturePath() {
    static const std::string path = [] {
        QImage image(256, 256, QImage::Format_RGBA8888);
        std::mt19937 rng(5);
        for (int y = 0; y < 256; ++y) {
            for (int x = 0; x < 256; ++x) {
                const int n = static_cast<int>(rng() % 24);
                image.setPixelColor(x, y, QColor((x + n) & 255, (y * 2) & 255, (x ^ y) & 255));
            }
        }
        const std::string p = (BenchDir() / "art.png").string();
        image.save(QString::fromStdString(p));
        return p;
    }();
    return path;
}

void EncodePicture(benchmark::State& state) {
    std::size_t bytes = 0;
    for (auto _ : state) {
        std::string error;
        const auto image = ReadTextureImage(PicturePath(), error);
        const auto ogf = EncodeOGF(*image, {OgfFormat::Auto, -1, "art.ogf"});
        bytes = ogf.size();
        benchmark::DoNotOptimize(ogf.data());
    }
    state.counters["ogf_bytes"] = static_cast<double>(bytes);
}

// The two halves of EncodePicture: reading the PNG (Qt's image reader) and our encoding.
void ReadPictureOnly(benchmark::State& state) {
    for (auto _ : state) {
        std::string error;
        benchmark::DoNotOptimize(ReadTextureImage(PicturePath(), error));
    }
}

void EncodeOnly(benchmark::State& state) {
    std::string error;
    const auto image = ReadTextureImage(PicturePath(), error);
    for (auto _ : state)
        benchmark::DoNotOptimize(EncodeOGF(*image, {}));
}

// The baseline: decoding the image the encoding gives.
void DecodeEncodedPicture(benchmark::State& state) {
    std::string error;
    const auto ogf = EncodeOGF(*ReadTextureImage(PicturePath(), error), {});
    clsOGF decoder;
    for (auto _ : state) {
        ByteReader r(ogf);
        benchmark::DoNotOptimize(decoder.ReadOGF(r));
    }
}

const std::vector<fs::path>& TwentyKilobyteFiles() {
    static const std::vector<fs::path> files = [] {
        std::vector<fs::path> out;
        fs::create_directories(BenchDir() / "files");
        std::vector<std::uint8_t> data(20 * 1024);
        for (int i = 0; i < 1000; ++i) {
            std::fill(data.begin(), data.end(), static_cast<std::uint8_t>(i));
            out.push_back(BenchDir() / "files" / ("tex" + std::to_string(i) + ".ogf"));
            WriteFileReplacing(out.back(), data);
        }
        return out;
    }();
    return files;
}

void HogCreateThousandFiles(benchmark::State& state) {
    const auto& files = TwentyKilobyteFiles();
    for (auto _ : state) {
        const HogEdit edit = CreateHog(BenchDir() / "bench.hog", files, 0);
        if (!edit.Error.empty()) state.SkipWithError(edit.Error.c_str());
    }
}

// The baseline: the same files read and written one after another into one file.
void CopyThousandFilesIntoOne(benchmark::State& state) {
    const auto& files = TwentyKilobyteFiles();
    for (auto _ : state) {
        std::vector<std::uint8_t> all;
        for (const auto& f : files) {
            const auto bytes = ReadFileBytes(f);
            all.insert(all.end(), bytes->begin(), bytes->end());
        }
        WriteFileReplacing(BenchDir() / "bench.bin", all);
    }
}

BENCHMARK(DecodeEncodedPicture)->Unit(benchmark::kMillisecond);
BENCHMARK(EncodePicture)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadPictureOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(EncodeOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(CopyThousandFilesIntoOne)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(HogCreateThousandFiles)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace mw
