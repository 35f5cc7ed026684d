// A settings file of sections and keys with the semantics of Windows profile files:
// sections and keys are found without regard to case, a written key replaces the old line
// in place or is appended to its section, a missing section is added at the end, and every
// other line (comments, unknown keys) is kept as it was.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mw {

class clsIniFile {
  public:
    clsIniFile() = default;
    explicit clsIniFile(std::filesystem::path path) : path_(std::move(path)) {}

    // Reads the file; a missing file gives an empty one. Returns false when it exists but
    // cannot be read.
    bool Load();
    // Writes the file through a temporary file; returns false on failure.
    bool Save() const;

    // Parses text directly (for tests and in-memory use).
    void SetText(std::string_view text);
    std::string Text() const;

    // The raw value of a key, trimmed; nullopt when the section or key is missing.
    std::optional<std::string> Find(std::string_view section, std::string_view key) const;

    bool WriteString(std::string_view section, std::string_view key, std::string_view value);
    std::string GetString(std::string_view section, std::string_view key,
                          std::string_view def) const;
    bool WriteInt(std::string_view section, std::string_view key, std::int16_t value);
    std::int16_t GetInt(std::string_view section, std::string_view key, std::int16_t def) const;
    bool WriteBoolean(std::string_view section, std::string_view key, bool value);
    bool GetBoolean(std::string_view section, std::string_view key, bool def) const;
    float GetSingle(std::string_view section, std::string_view key, float def) const;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
    std::vector<std::string> lines_;
};

// The profile integer of a text: an optional sign and the leading decimal digits; 0 when
// there are none.
std::int32_t ProfileInt(std::string_view text);

// A float written with "." or "," as the decimal separator; nullopt when it is no number.
std::optional<float> ParseFloatText(std::string_view text);

// The shortest text that reads back to the same 32-bit float, with ".".
std::string FloatText(float v);

}  // namespace mw
