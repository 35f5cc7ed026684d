#include "app/logo.h"

#include <QDir>
#include <QFile>
#include <QTemporaryFile>

#include "app/scramble.h"

namespace mw {

extern const unsigned char kScrambledLogo[];
extern const unsigned long kScrambledLogoSize;

bool UnpackLogo(const QString& path) {
    QFile::remove(path);
    const std::vector<std::uint8_t> bytes =
        ScrambleBytes(std::span<const std::uint8_t>(kScrambledLogo, kScrambledLogoSize));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    const auto size = static_cast<qint64>(bytes.size());
    return file.write(reinterpret_cast<const char*>(bytes.data()), size) == size;
}

int CreateLogo(QPixmap& logo) {
    QString path;
    {
        QTemporaryFile reserve(QDir::temp().filePath("meshwright-logo-XXXXXX.png"));
        if (!reserve.open()) return 1;
        path = reserve.fileName();
    }
    const bool ok = UnpackLogo(path) && logo.load(path, "PNG");
    QFile::remove(path);
    if (!ok) logo = QPixmap();
    return ok ? 0 : 1;
}

}  // namespace mw
