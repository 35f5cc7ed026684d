#include "gamedata/progress.h"

#include <cmath>

namespace mw {

std::string ShortenProgressText(std::string_view text) {
    if (text.size() < 30) return std::string(text);
    const auto blank = text.find(' ');
    if (blank == std::string_view::npos) return std::string(text.substr(text.size() - 30));
    const std::string_view rest = text.substr(blank);
    const std::string_view tail = rest.size() > 27 ? rest.substr(rest.size() - 27) : rest;
    return std::string(text.substr(0, blank + 1)) + "..." + std::string(tail);
}

void ShowProgress(ProgressSink* sink, int& percent, std::string_view text) {
    if (percent < 0) percent = 0;
    if (percent > 100) percent = 100;
    if (sink != nullptr) sink->Report(percent, text.empty() ? "" : ShortenProgressText(text));
}

int PercentOf(double part, double whole) {
    if (whole <= 0) return 0;
    return static_cast<int>(std::nearbyint(part / whole * 100.0));
}

}  // namespace mw
