#include "view/background.h"

#include <QImage>

#include "gamedata/file_names.h"
#include "gamedata/targa.h"
#include "model/file_io.h"

namespace mw {

std::optional<BackgroundImage> LoadTGA(std::span<const std::uint8_t> bytes,
                                       ProgressSink* progress) {
    // A background is an uncompressed true-colour picture: no run-length files.
    if (bytes.size() < 3 || bytes[2] != 2) return std::nullopt;
    const std::optional<RgbaImage> picture = ReadTarga(bytes);
    if (!picture) return std::nullopt;
    int percent = 0;
    ShowProgress(progress, percent, "Reading Bitmap data...");
    const int width = picture->Width, height = picture->Height;
    BackgroundImage image{width, height,
                          std::vector<std::uint8_t>(static_cast<std::size_t>(width) * height * 3)};
    for (int y = 0; y < height; ++y) {
        // The picture's rows run from the top; the background's from the bottom.
        const std::uint32_t* row =
            &picture->Pixels[static_cast<std::size_t>(height - 1 - y) * width];
        std::uint8_t* out = &image.Rgb[static_cast<std::size_t>(y) * width * 3];
        for (int x = 0; x < width; ++x) {
            for (int c = 0; c < 3; ++c)
                out[3 * x + c] = static_cast<std::uint8_t>(row[x] >> (8 * c));
        }
        percent = 50 + PercentOf(y + 1, height) / 2;
        ShowProgress(progress, percent, "");
    }
    return image;
}

std::optional<BackgroundImage> LoadBackgroundPicture(const std::string& path,
                                                     ProgressSink* progress) {
    if (ContainsIgnoringCase(path, ".tga")) {
        const auto bytes = ReadFileBytes(path);
        if (!bytes) return std::nullopt;
        return LoadTGA(*bytes, progress);
    }
    QImage picture(QString::fromStdString(path));
    if (picture.isNull()) return std::nullopt;
    picture = picture.convertToFormat(QImage::Format_RGB888);
    BackgroundImage image{picture.width(), picture.height(), {}};
    image.Rgb.resize(static_cast<std::size_t>(image.Width) * image.Height * 3);
    for (int y = 0; y < image.Height; ++y) {
        // Qt's rows run from the top; the background's from the bottom.
        const uchar* row = picture.constScanLine(image.Height - 1 - y);
        std::copy_n(row, image.Width * 3,
                    &image.Rgb[static_cast<std::size_t>(y) * image.Width * 3]);
    }
    return image;
}

}  // namespace mw
