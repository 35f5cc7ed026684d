#include "gamedata/file_names.h"

#include <algorithm>

namespace mw {
namespace {

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

bool IsFile(const std::filesystem::path& p) {
    std::error_code ec;
    return std::filesystem::is_regular_file(p, ec);
}

}  // namespace

std::string NormalizeSeparators(std::string_view path) {
    std::string out(path);
    std::replace(out.begin(), out.end(), '\\', kSeparator);
    return out;
}

std::string AsciiLower(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        c = Lower(c);
    return out;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && AsciiLower(a) == AsciiLower(b);
}

std::size_t FindIgnoringCase(std::string_view text, std::string_view part) {
    return AsciiLower(text).find(AsciiLower(part));
}

bool ContainsIgnoringCase(std::string_view text, std::string_view part) {
    return FindIgnoringCase(text, part) != std::string::npos;
}

std::optional<std::filesystem::path> FindFileIgnoringCase(const std::string& path) {
    namespace fs = std::filesystem;
    if (path.empty()) return std::nullopt;
    const fs::path wanted(NormalizeSeparators(path));
    if (IsFile(wanted)) return wanted;

    // Walk the path part by part, taking the first entry that matches ignoring case.
    fs::path found = wanted.is_absolute() ? wanted.root_path() : fs::path(".");
    for (const fs::path& part : wanted.relative_path()) {
        std::error_code ec;
        if (fs::exists(found / part, ec)) {
            found /= part;
            continue;
        }
        std::optional<fs::path> match;
        for (fs::directory_iterator it(found, ec), end; !ec && it != end; it.increment(ec)) {
            if (EqualsIgnoringCase(it->path().filename().string(), part.string())) {
                match = it->path();
                break;
            }
        }
        if (!match) return std::nullopt;
        found = *match;
    }
    if (!IsFile(found)) return std::nullopt;
    return wanted.is_absolute() ? found : found.lexically_normal();
}

std::string FileNameOf(std::string_view path) {
    const auto p = path.find_last_of("/\\");
    return std::string(p == std::string_view::npos ? path : path.substr(p + 1));
}

}  // namespace mw
