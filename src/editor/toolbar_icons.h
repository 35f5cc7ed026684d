// The tool bar's pictures, drawn by the program so that they look the same on every desktop.
#pragma once

#include <QIcon>
#include <QString>

namespace mw {

// The icon of a tool bar button by its key ("open", "save", "zoom", ...); a null icon for an
// unknown key. Also "nextframe", "previousframe", "looping", "play" and "stop".
QIcon ToolbarIcon(const QString& key);

}  // namespace mw
