// Texts of the game's files are Windows-1252 bytes; the model keeps them as bytes so that
// every byte value survives a read and a write. These helpers convert at the edges.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mw {

// Lower case as the Windows-1252 letters define it (ASCII and the accented letters).
std::string LowerCase1252(std::string_view bytes);

// UTF-8 for display and JSON. Bytes that the code page leaves undefined map to the
// control characters of the same value, so the conversion is reversible.
std::string Utf8From1252(std::string_view bytes);

// The reverse of Utf8From1252; characters outside the code page become '?'.
std::string Cp1252FromUtf8(std::string_view utf8);

// The same, or nullopt when a character has no Windows-1252 form (or the text is no UTF-8).
std::optional<std::string> Cp1252FromUtf8Exact(std::string_view utf8);

// Leading and trailing characters of `chars` (by default spaces) removed.
std::string_view TrimSpaces(std::string_view text, std::string_view chars = " ");

}  // namespace mw
