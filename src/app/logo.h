// The logo shown in the start-up frame and the about box.
#pragma once

#include <QPixmap>
#include <QString>

namespace mw {

// Unscrambles the logo into a file at `path` (replacing any file there). False on failure.
bool UnpackLogo(const QString& path);

// Unpacks the logo to a temporary file, loads it and deletes the file. Status 0 on success,
// 1 on any failure (the picture is then null).
int CreateLogo(QPixmap& logo);

}  // namespace mw
