// File-name helpers: names compare without regard to case, and game files are found
// ignoring case on case-sensitive file systems ("D3.HOG" matches "d3.hog").
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace mw {

inline constexpr char kSeparator = '/';

// Paths typed or stored with "\" use the platform separator instead.
std::string NormalizeSeparators(std::string_view path);

std::string AsciiLower(std::string_view text);
bool EqualsIgnoringCase(std::string_view a, std::string_view b);
bool ContainsIgnoringCase(std::string_view text, std::string_view part);
std::size_t FindIgnoringCase(std::string_view text, std::string_view part);

// The existing regular file that `path` names, each part of it matched ignoring case when
// no exact match exists; nullopt when there is none.
std::optional<std::filesystem::path> FindFileIgnoringCase(const std::string& path);

// The part of a path after its last separator ("/" or "\").
std::string FileNameOf(std::string_view path);

}  // namespace mw
