#include "editor/widgets/number_format.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "model/properties.h"

namespace mw {

std::string FormatNumber(double value, std::string_view format) {
    const std::size_t point = format.find('.');
    const std::string_view whole = format.substr(0, point);
    const std::string_view fraction =
        point == std::string_view::npos ? std::string_view{} : format.substr(point + 1);
    const auto required = static_cast<int>(std::count(fraction.begin(), fraction.end(), '0'));
    const auto optional = static_cast<int>(std::count(fraction.begin(), fraction.end(), '#'));
    const auto wholeDigits = static_cast<int>(std::count(whole.begin(), whole.end(), '0'));

    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", required + optional, std::fabs(value));
    std::string text = buffer;
    // Optional decimals that are zero are left out, and the point with them.
    if (optional > 0) {
        std::size_t end = text.size();
        const std::size_t keep = text.find('.') + 1 + static_cast<std::size_t>(required);
        while (end > keep && text[end - 1] == '0')
            --end;
        text.resize(end);
        if (text.back() == '.') text.pop_back();
    }
    // As many whole digits as the format demands: "#.00" shows ".50", "00" shows "05".
    std::size_t wholeLength = std::min(text.find('.'), text.size());
    if (wholeDigits == 0 && wholeLength == 1 && text[0] == '0' && text.size() > 1) {
        text.erase(0, 1);
    }
    for (; static_cast<int>(wholeLength) < wholeDigits; ++wholeLength)
        text.insert(0, "0");
    const bool zero = text.find_first_not_of("0.") == std::string::npos;
    if (value < 0 && !zero) text.insert(0, "-");
    return text;
}

double ParseTypedNumber(std::string text) {
    std::replace(text.begin(), text.end(), ',', '.');
    return LeadingNumber(text);
}

}  // namespace mw
