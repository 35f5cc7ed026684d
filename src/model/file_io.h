// Whole-file reading and safe writing.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace mw {

// A whole file's bytes, or nullopt when it cannot be opened or is a folder.
std::optional<std::vector<std::uint8_t>> ReadFileBytes(const std::filesystem::path& path);

// Writes `bytes` to `path` through a temporary file in the same folder, replacing the
// target only when everything was written. Returns an empty text on success, else a
// message naming the file.
std::string WriteFileReplacing(const std::filesystem::path& path,
                               std::span<const std::uint8_t> bytes);

}  // namespace mw
