// The index of the game's HOG2 archives: d3.hog, Extra13.hog and a mission archive, each in
// a fixed slot, with the models, texture images and GAM tables they hold.
#pragma once

#include <array>
#include <cstdint>
#include <fstream>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "gamedata/progress.h"
#include "gamedata/settings.h"

namespace mw {

inline constexpr int kLooseImageIndex = 999999;
inline constexpr int kSlotD3 = 1;
inline constexpr int kSlotExtra13 = 2;
inline constexpr int kSlotMission = 3;

struct HogModelEntry {
    std::string Name;  // the 36-byte name field as stored
    std::uint64_t Offset = 0;
    std::uint32_t Length = 0;
    std::uint8_t Slot = 0;
};

struct HogTextureEntry {
    std::string Name;  // the name field in lower case
    std::uint64_t Offset = 0;
    std::uint32_t Length = 0;
    std::uint8_t Slot = 0;
    bool IsOGF = true;
};

struct HogGamEntry {
    std::string Name;
    std::uint64_t Offset = 0;
    std::uint32_t Length = 0;  // 0: the archive holds no table
};

struct HogSlot {
    std::string Path;  // set only when the directory was read
    bool Loaded = false;
    int FirstModel = 0, LastModel = -1;
    int FirstTexture = 0, LastTexture = -1;
};

// One directory entry of an archive.
struct HogDirectoryEntry {
    std::string Field;  // the 36-byte name field as stored
    std::string Name;   // the field cut at its first NUL
    std::uint64_t Offset = 0;
    std::uint32_t Length = 0;
};

enum class HogStatus { Ok = 0, NoDataOffset = 1, NotHog = 2 };

// Reads an archive's directory from its bytes (at least the header and directory).
HogStatus ReadHogEntries(std::span<const std::uint8_t> bytes,
                         std::vector<HogDirectoryEntry>& entries);

// Reads the directory of an archive file, reading only its header and directory.
HogStatus ReadHogFileEntries(const std::string& path, std::vector<HogDirectoryEntry>& entries);

// The kind of an entry by its extension: "model", "texture", "animation", "table", "other".
const char* HogEntryKind(std::string_view name);

// The text of a name field: up to the first NUL, blanks trimmed.
std::string EntryName(std::string_view field);

struct TexLookup {
    int index = -1;    // a texture-list index, kLooseImageIndex, or -1
    std::string path;  // the loose file, for kLooseImageIndex
};

class clsHOG {
  public:
    // Rebuilds the index from the archive paths of the settings. A missing d3.hog or
    // Extra13.hog empties its path in the settings.
    void ReadHOGs(Settings& settings, ProgressSink* progress);

    // Indexes one archive file into `slot`.
    HogStatus ReadHogDirectory(const std::string& path, int slot, ProgressSink* progress);

    // Adds a directory's models, textures and table to the lists, for `slot`.
    void AddEntries(const std::vector<HogDirectoryEntry>& entries, int slot,
                    ProgressSink* progress);
    // Makes a slot's texture range and its sorted lookup keys from the lists' ends.
    void CloseSlot(int slot, int firstModel, int firstTexture);

    // Finds a texture by its name without extension: a loose image in the OGF folder first,
    // then the mission archive, Extra13.hog and d3.hog.
    TexLookup GetTexIndex(std::string_view name, const Settings& settings) const;

    // The texture-list index of `name` within one slot's range, or -1. Names compare in
    // lower case; the lookup works whether or not the directory was sorted.
    int FindTexture(std::string_view name, int slot) const;

    std::vector<HogModelEntry> Models;
    std::vector<HogTextureEntry> Textures;
    std::array<HogGamEntry, 5> GamEntries;
    std::array<HogSlot, 4> Slots;  // 1..3 used

  private:
    void Reset();
    // Per slot: (lookup key, texture index), sorted, for the exact search.
    std::array<std::vector<std::pair<std::string, int>>, 4> sortedKeys_;
};

// The archive files of the loaded slots, each opened once, for reading entry data.
class ArchiveReader {
  public:
    explicit ArchiveReader(const clsHOG& hog);
    bool IsOpen(int slot) const;
    // The bytes at offset..offset+length of a slot's archive (fewer when the file is shorter).
    std::optional<std::vector<std::uint8_t>> Read(int slot, std::uint64_t offset,
                                                  std::uint64_t length);

  private:
    std::array<std::ifstream, 4> files_;
    std::array<std::uint64_t, 4> sizes_{};
};

// The whole of one directory entry of the archive file at `archive`; nullopt when the file
// cannot be opened or ends inside the entry.
std::optional<std::vector<std::uint8_t>> ReadArchiveEntry(const std::string& archive,
                                                          const HogDirectoryEntry& entry);

}  // namespace mw
