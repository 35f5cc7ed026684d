// Sub-object property strings: the keyword that gives a sub-object its special role and
// the values that come with it.
#pragma once

#include <string>
#include <string_view>

#include "model/model_data.h"

namespace mw {

// Trims and lower-cases the sub-object's Properties in place and derives PropertyFlags,
// RotateSpeed, GlowColor/GlowSize and FovValues from it.
void ParseProperties(SubObject& sub);

// Gives the sub-object exactly one property, as the sub-object panel does: PropertyFlags
// becomes `flag` alone and Properties its keyword, followed for "$rotate=", "$glow=" and
// "$fov=" by the sub-object's current values. Returns false for a flag that is no keyword.
bool ComposeProperties(SubObject& sub, std::uint32_t flag);

// A number as plain decimal text: "2", "0.5".
std::string PlainNumber(float v);

// The decimal number at the start of a text (digits, an optional fraction and exponent);
// 0 when the text does not start with one.
double LeadingNumber(std::string_view text);

}  // namespace mw
