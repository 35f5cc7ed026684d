#include "convert/texture_images.h"

#include <QImage>
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
