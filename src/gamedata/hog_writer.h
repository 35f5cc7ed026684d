// Writing HOG2 archives: building one from named files, and creating, adding to and removing
// from an archive file. The directory is kept sorted as the game compares names, because the
// game finds a file in an archive by a binary search over its names. Every write goes to a
// temporary file beside the target, which is replaced only when the archive is complete.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace mw {

struct HogFile {
    std::string Name;
    std::vector<std::uint8_t> Data;
};

// An entry's name field holds this many characters before its NUL.
inline constexpr std::size_t kHogNameLength = 35;

// The order and equality of entry names as the game's archive lookup has them: ASCII
// letters without regard to case, every other byte by its unsigned value. Names are
// Windows-1252 bytes.
bool HogNameLess(std::string_view a, std::string_view b);
bool HogNamesEqual(std::string_view a, std::string_view b);
// A file name (UTF-8) as an archive holds it, or nullopt when it has no Windows-1252 form.
std::optional<std::string> HogNameFromUtf8(std::string_view utf8);
// The first entry (by index) that stands before its predecessor in the game's order; -1
// when the directory is in order.
int FirstOutOfOrder(const std::vector<std::string>& names);

// The archive of these files (names checked by the caller), every entry stamped `time`.
std::vector<std::uint8_t> BuildHOG(std::vector<HogFile> files, std::uint32_t time);

// Every entry of an archive with its bytes; nullopt when the bytes are no archive or an
// entry runs past them.
std::optional<std::vector<HogFile>> ReadHogFiles(std::span<const std::uint8_t> bytes);

// What an archive command did, or why it did nothing (Error not empty: nothing written).
struct HogEdit {
    std::string Error;
    bool InputUnreadable = false;  // the failure was a file that could not be read
    std::vector<std::string> Added;
    std::vector<std::string> Replaced;
    std::vector<std::string> Removed;
};

// The entries' time: SOURCE_DATE_EPOCH when it holds a number (reproducible builds), else 0.
std::uint32_t ArchiveTime(const char* sourceDateEpoch);

HogEdit CreateHog(const std::filesystem::path& archive,
                  const std::vector<std::filesystem::path>& files, std::uint32_t time);
// A file whose name is in the archive already (ignoring case) replaces that entry.
HogEdit AddToHog(const std::filesystem::path& archive,
                 const std::vector<std::filesystem::path>& files, std::uint32_t time);
HogEdit RemoveFromHog(const std::filesystem::path& archive, const std::vector<std::string>& names,
                      std::uint32_t time);

// The archive with one entry's contents replaced (or, when no entry has that name, added in
// its place in the game's order); every other entry keeps its bytes, flags and time.
// nullopt when the bytes are no archive.
std::optional<std::vector<std::uint8_t>> ReplaceHogEntry(std::span<const std::uint8_t> archive,
                                                         const std::string& name,
                                                         std::span<const std::uint8_t> data);

// Writes named files (as a package makes them) into a new archive.
HogEdit WriteHogFiles(const std::filesystem::path& archive, std::vector<HogFile> files,
                      std::uint32_t time);

}  // namespace mw
