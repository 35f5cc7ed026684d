#include "convert/texture_images.h"

#include <QImage>
#include <algorithm>
#include <cmath>
#include <cstring>

#include "gamedata/file_names.h"
#include "gamedata/targa.h"
#include "model/file_io.h"

namespace mw {
namespace {

QImage ToQImage(const RgbaImage& image) {
    QImage q(image.Width, image.Height, QImage::Format_RGBA8888);
    for (int y = 0; y < image.Height; ++y) {
        std::memcpy(q.scanLine(y), &image.Pixels[static_cast<std::size_t>(y) * image.Width],
                    static_cast<std::size_t>(image.Width) * 4);
    }
    return q;
}

RgbaImage FromQImage(const QImage& source) {
    const QImage q = source.convertToFormat(QImage::Format_RGBA8888);
    RgbaImage image{q.width(), q.height(), {}};
    image.Pixels.resize(static_cast<std::size_t>(q.width()) * static_cast<std::size_t>(q.height()));
    for (int y = 0; y < q.height(); ++y) {
        std::memcpy(&image.Pixels[static_cast<std::size_t>(y) * q.width()], q.constScanLine(y),
                    static_cast<std::size_t>(q.width()) * 4);
    }
    return image;
}

}  // namespace

std::optional<RgbaImage> ReadTextureImage(const std::string& path, std::string& error) {
    if (ContainsIgnoringCase(path, ".tga")) {
        const auto bytes = ReadFileBytes(path);
        if (!bytes) {
            error = "Cannot read " + path + ".";
            return std::nullopt;
        }
        auto image = ReadTarga(*bytes);
        if (!image) error = path + " is not a Targa picture this program reads.";
        return image;
    }
    QImage q;
    if (!q.load(QString::fromStdString(path))) {
        error = "Cannot read " + path + " as a picture.";
        return std::nullopt;
    }
    return FromQImage(q);
}

int NearestPowerOfTwo(int n) {
    if (n <= 1) return 1;
    const int below = 1 << static_cast<int>(std::floor(std::log2(n)));
    const int above = below * 2;
    return n - below < above - n ? below : above;
}

RgbaImage ResizeToPowerOfTwo(const RgbaImage& image) {
    const int w = NearestPowerOfTwo(image.Width), h = NearestPowerOfTwo(image.Height);
    if (w == image.Width && h == image.Height) return image;
    return FromQImage(
        ToQImage(image).scaled(w, h, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

}  // namespace mw

namespace mw {
namespace {

// Keeps what the loader hands over, picture by picture.
class PictureKeeper : public TextureUploader {
  public:
    std::vector<std::optional<RgbaImage>> pictures;
    void AllocModelTextures(int count) override {
        pictures.assign(static_cast<std::size_t>(std::max(count, 0)), std::nullopt);
    }
    void UploadModelTexture(int texture, int width, int height,
                            const std::uint32_t* pixels) override {
        if (texture < 0 || static_cast<std::size_t>(texture) >= pictures.size()) return;
        RgbaImage image;
        image.Width = width;
        image.Height = height;
        image.Pixels.assign(
            pixels, pixels + static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        pictures[static_cast<std::size_t>(texture)] = std::move(image);
    }
};

}  // namespace

std::optional<DecodedImage> DecodePictureFile(const std::string& path) {
    std::string error;
    auto picture = ReadTextureImage(path, error);
    if (!picture || picture->Width > 4096 || picture->Height > 4096) return std::nullopt;
    if (NearestPowerOfTwo(picture->Width) != picture->Width ||
        NearestPowerOfTwo(picture->Height) != picture->Height) {
        picture = ResizeToPowerOfTwo(*picture);
    }
    DecodedImage image;
    image.Width = static_cast<std::int16_t>(picture->Width);
    image.Height = static_cast<std::int16_t>(picture->Height);
    image.Pixels = std::move(picture->Pixels);
    image.HasAlpha = std::any_of(image.Pixels.begin(), image.Pixels.end(),
                                 [](std::uint32_t p) { return (p >> 24) != 255; });
    return image;
}

std::vector<std::optional<RgbaImage>> ResolveTexturePictures(const ModelData& model,
                                                             const std::string& modelPath,
                                                             GameData& data,
                                                             const Settings& settings) {
    PictureKeeper keeper;
    LoadedTextures loaded;
    LoadModelTextures(model, modelPath, data, settings, MakeMissingTexture(1), keeper, loaded,
                      DecodePictureFile);
    keeper.pictures.resize(model.Textures.size());
    for (std::size_t t = 0; t < keeper.pictures.size(); ++t) {
        // The placeholder of a texture that was not found is no picture of it.
        if (t >= loaded.Resolved.size() || !loaded.Resolved[t].Decoded) keeper.pictures[t].reset();
    }
    return std::move(keeper.pictures);
}

}  // namespace mw
