#pragma once

#include <string>
#include <string_view>

namespace mw {

// The name a model texture loads as: old bitmap names map to the names the game's tables
// use now. `lowerName` is in lower case; the result is too.
std::string RenamedTexture(std::string_view lowerName);

}  // namespace mw
