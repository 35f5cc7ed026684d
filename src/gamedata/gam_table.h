// A GAM table as a list of pages: each page's bytes as read, and for the texture, sound,
// door, generic, ship and weapon pages a record of every field. An unchanged table writes
// back to the same bytes; an edited page is written in the game's current version for it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "gamedata/gam_records.h"

namespace mw {

struct GamTable;

struct TablePage {
    std::uint8_t Type = 0;
    std::vector<std::uint8_t> Bytes;  // the page as read: type, length, body
    std::size_t FieldBytes = 0;       // what the fields took of the body (the version included)
    bool Edited = false;              // written from the record, in the current version

    // Every field of the page (empty for page kinds kept as bytes only). A page read from a
    // table is decoded from its bytes the first time its record is asked for: a table holds
    // thousands of pages, and a generic page's record thousands of texts.
    const PageRecord& Record() const;
    // The record of a page made here (its bytes written from it by MakePage).
    void SetRecord(PageRecord record);
    // The page's name ("" for pages kept as bytes).
    const std::string& Name() const;
    // The bytes the body holds past its fields (the game would take them for the next page).
    std::size_t ExtraBytes() const;

  private:
    mutable PageRecord record_;
    mutable bool decoded_ = true;  // false: record_ is still to be read from Bytes

    friend std::optional<GamTable> ReadGamPages(std::span<const std::uint8_t>, std::string&);
};

struct GamTable {
    std::vector<TablePage> Pages;
};

// Reads a table. nullopt with `error` set when a page's length runs past the data, a string
// has no end within its page, a version is unknown, or fields run past their page's length;
// nothing is allocated for a count the bytes cannot hold.
std::optional<GamTable> ReadGamPages(std::span<const std::uint8_t> bytes, std::string& error);

// The table's bytes: unchanged pages as read, edited ones anew.
std::vector<std::uint8_t> WriteGamPages(const GamTable& table);

// One page of the record in the game's current version for it (type, length, body).
std::vector<std::uint8_t> EncodePage(const PageRecord& record);

// The record as the game's current version has it: the fields an older version lacks set as
// the game sets them when it reads that version.
void UpgradeRecord(PageRecord& record);

// A page for a record made or changed here: its version raised to the current one, the
// fields that version adds set as the game sets them for older pages.
TablePage MakePage(PageRecord record);

// The page type a record is written as (0 for none).
std::uint8_t PageTypeOf(const PageRecord& record);
const char* PageKindName(std::uint8_t type);
// The version the game writes pages of that type in (0 for types it no longer writes).
std::int16_t CurrentPageVersion(std::uint8_t type);  // "texture", "generic", ...; "unknown"

// The first page of that name (ignoring case), of any kind with a name; -1 when none.
int FindPage(const GamTable& table, std::string_view name);

}  // namespace mw
