#include "editor/dialogs/preference_fields.h"

#include <QDir>
#include <QFileInfo>
#include <cmath>

#include "convert/pofgen.h"
#include "gamedata/file_names.h"
#include "gamedata/ini_file.h"

namespace mw {
namespace {

constexpr double kMaxValue = 65535.0;

// Typed numbers take "." or ","; anything else counts as 0.
double NumberIn(const QString& text) {
    return ParseFloatText(text.trimmed().toStdString()).value_or(0.0f);
}

}  // namespace

QString EightDecimals(double value) {
    return QString::number(value, 'f', 8);
}

FieldCheck CheckScaleField(const QString& text) {
    const double v = NumberIn(text);
    if (!(v > 0.0)) return {"0.02540000", "Error: Scale Factor <= 0 Illegal!"};
    if (v > kMaxValue) return {"65535.0000", "Error: Scale Factor > 65535.0000 Illegal!"};
    return {EightDecimals(v), {}};
}

FieldCheck CheckToleranceField(const QString& text) {
    const double v = NumberIn(text);
    if (v < 0.0) return {"0.00000000", "Error: Tolerance < 0 Illegal!"};
    if (v > kMaxValue) return {"65535.0000", "Error: Tolerance > 65535.0000 Illegal!"};
    return {EightDecimals(v), {}};
}

FieldCheck CheckChunkField(const QString& text) {
    const long n = std::lrint(NumberIn(text));
    if (n < 0) return {"0", "Error: Chunk Splits <= 1 Illegal!"};
    if (n > 255) return {"255", "Error: Chunk Splits > 255 Illegal!"};
    return {QString::number(n), {}};
}

QString ExistingFile(const QString& path, std::initializer_list<const char*> parts) {
    const std::string p = path.trimmed().toStdString();
    if (p.empty()) return {};
    bool named = parts.size() == 0;
    for (const char* part : parts)
        named = named || ContainsIgnoringCase(p, part);
    if (!named || !FindFileIgnoringCase(p)) return {};
    return path.trimmed();
}

QString ExistingD3Hog(const QString& path) {
    return ExistingFile(path, {"d3.hog"});
}

QString ExistingMission(const QString& path) {
    return ExistingFile(path, {".gam", ".mn3", ".hog"});
}

QString ExistingPicture(const QString& path) {
    return ExistingFile(path, {"."});
}

QString ExistingFolder(const QString& path) {
    const QString p = path.trimmed();
    if (p.isEmpty()) return {};
    return QFileInfo(QString::fromStdString(NormalizeSeparators(p.toStdString()))).isDir()
               ? p
               : QString();
}

QString ExistingCompiler(const QString& path) {
    const QString p = ExistingFile(path);
    return NamesCompiler(p.toStdString()) ? p : QString();
}

QString ExistingProgram(const QString& path) {
    if (path.isEmpty()) return {};
    const QFileInfo info(path);
    return info.isFile() && info.isExecutable() ? path : QString();
}

QString WithTrailingSeparator(const QString& folder) {
    if (folder.isEmpty() || folder.endsWith('/') || folder.endsWith('\\')) return folder;
    return folder + QDir::separator();
}

}  // namespace mw
