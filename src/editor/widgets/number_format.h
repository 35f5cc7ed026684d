// Number texts as the panels show them, by format strings of the form "####0.00", "#0.0",
// "##0" or "##0.##": a "0" is a digit always shown, a "#" a digit shown only when needed.
#pragma once

#include <string>
#include <string_view>

namespace mw {

std::string FormatNumber(double value, std::string_view format);

// The number a typed text stands for: "," is read as ".", and the leading number counts
// (0 when there is none).
double ParseTypedNumber(std::string text);

}  // namespace mw
