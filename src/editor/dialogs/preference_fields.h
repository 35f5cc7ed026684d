// The preferences dialog's field rules: which stored paths it shows, how a field is
// corrected when the user leaves it, and the message that goes with a correction.
#pragma once

#include <QString>

namespace mw {

// A field's text after the rule, and the message to show (empty when the text was fine).
struct FieldCheck {
    QString text;
    QString message;
};

FieldCheck CheckScaleField(const QString& text);
FieldCheck CheckToleranceField(const QString& text);
FieldCheck CheckChunkField(const QString& text);

// Scale and tolerance as the fields show them.
QString EightDecimals(double value);

// The path if its file exists (found ignoring case) and its name holds one of `parts`
// (ignoring case; no parts: any name), else empty.
QString ExistingFile(const QString& path, std::initializer_list<const char*> parts = {});
// The stored paths the dialog shows and keeps: d3.hog, a mission archive or table (.gam,
// .mn3, .hog), a picture (a name with a ".").
QString ExistingD3Hog(const QString& path);
QString ExistingMission(const QString& path);
QString ExistingPicture(const QString& path);
// The path if it names an existing folder, else empty.
QString ExistingFolder(const QString& path);
// A compiler field: kept when the file exists and names pofgen.exe or bspgen.exe.
QString ExistingCompiler(const QString& path);

// A program field: kept when the file exists and may be run.
QString ExistingProgram(const QString& path);

// A folder path ending in the separator (empty stays empty).
QString WithTrailingSeparator(const QString& folder);

}  // namespace mw
