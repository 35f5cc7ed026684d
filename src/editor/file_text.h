// Names and property texts are stored in the files as Windows-1252 bytes; the widgets show
// and edit them as Unicode.
#pragma once

#include <QString>
#include <string>

#include "model/text_codec.h"

namespace mw {

inline QString FromFileText(const std::string& bytes) {
    return QString::fromStdString(Utf8From1252(bytes));
}

inline std::string ToFileText(const QString& text) {
    return Cp1252FromUtf8(text.toStdString());
}

}  // namespace mw
