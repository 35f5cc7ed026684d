#include "view/background.h"

#include <QImage>

#include "gamedata/file_names.h"
#include "model/byte_cursor.h"
#include "model/file_io.h"

namespace mw {

std::optional<BackgroundImage> LoadTGA(std::span<const std::uint8_t> bytes,
                                       ProgressSink* progress) {
    ByteReader r(bytes);
    const std::uint8_t idLength = r.u8();
    const std::uint8_t colourMapType = r.u8();
    const std::uint8_t imageType = r.u8();
    r.skip(5 + 4);  // colour map fields, origin
    const int width = r.u16();
    const int height = r.u16();
    const std::uint8_t depth = r.u8();
    const std::uint8_t descriptor = r.u8();
    r.skip(idLength);
    if (!r.ok() || colourMapType == 1 || imageType != 2) return std::nullopt;
    const std::size_t bytesPerPixel = depth == 15 || depth == 16 ? 2
                                      : depth == 24              ? 3
                                      : depth == 32              ? 4
                                                                 : 0;
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (bytesPerPixel == 0 || !r.canHold(static_cast<std::int64_t>(count), bytesPerPixel)) {
        return std::nullopt;
    }
    int percent = 0;
    ShowProgress(progress, percent, "Reading Bitmap data...");

    // Pixels in file order, as red, green, blue.
    std::vector<std::uint8_t> file(count * 3);
    for (std::size_t i = 0; i < count; ++i) {
        std::uint8_t* p = &file[3 * i];
        if (bytesPerPixel == 2) {
            const std::uint16_t v = r.u16();
            p[0] = static_cast<std::uint8_t>(((v >> 10) & 31) * 8);
            p[1] = static_cast<std::uint8_t>(((v >> 5) & 31) * 8);
            p[2] = static_cast<std::uint8_t>((v & 31) * 8);
        } else {
            p[2] = r.u8();
            p[1] = r.u8();
            p[0] = r.u8();
            if (bytesPerPixel == 4) r.u8();
        }
    }
    // Bit 4: columns run right to left; bit 5: rows run top to bottom. Stored bottom-up.
    const bool mirrorColumns = (descriptor & 0x10) != 0;
    const bool topDown = (descriptor & 0x20) != 0;
    BackgroundImage image{width, height, std::vector<std::uint8_t>(count * 3)};
    for (int y = 0; y < height; ++y) {
        const int row = topDown ? height - 1 - y : y;
        for (int x = 0; x < width; ++x) {
            const int column = mirrorColumns ? width - 1 - x : x;
            const std::size_t from = 3 * (static_cast<std::size_t>(y) * width + x);
            const std::size_t to = 3 * (static_cast<std::size_t>(row) * width + column);
            std::copy_n(&file[from], 3, &image.Rgb[to]);
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
