// A GAM table from a file: a loose .gam, or the table inside an archive (for NAME.mn3 the
// entry NAME.gam that the game loads, else the archive's last .gam). Saving writes the table
// back where it came from; in an archive nothing else changes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "gamedata/gam_table.h"

namespace mw {

struct TableFile {
    std::vector<std::uint8_t> Bytes;  // the whole file
    bool InArchive = false;
    std::string Entry;  // the table's name in the archive (Windows-1252), "" for a loose file
    GamTable Table;
};

enum class TableLoad { Ok, Unreadable, Damaged, NoTable };

// Reads the table; `message` says what went wrong otherwise.
TableLoad LoadTableFile(const std::filesystem::path& path, TableFile& file, std::string& message);

// Writes `table` to `out` as the file `source` was (atomically): a loose table, or the archive
// with its table entry replaced. Returns "" or the reason nothing was written.
std::string SaveTableFile(const TableFile& source, const GamTable& table,
                          const std::filesystem::path& out);

struct NamedTable;
class clsHOG;
struct Settings;

// The tables of the game data: each loaded archive's table (d3.hog, extra13.hog, the mission)
// and the loose .gam the settings name, in the game's order. A table that cannot be read is
// left out and named in `skipped`.
std::vector<NamedTable> ReadGameTables(const clsHOG& hog, const Settings& settings,
                                       std::vector<std::string>& skipped);

// The table entry the game loads from a mission archive of this file name ("NAME.gam").
std::string MissionTableName(const std::filesystem::path& archive);

}  // namespace mw
