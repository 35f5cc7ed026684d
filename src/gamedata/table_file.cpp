#include "gamedata/table_file.h"

#include "gamedata/file_names.h"
#include "gamedata/hog.h"
#include "gamedata/hog_writer.h"
#include "gamedata/settings.h"
#include "gamedata/table_check.h"
#include "model/file_io.h"
#include "model/text_codec.h"

namespace mw {

std::string MissionTableName(const std::filesystem::path& archive) {
    return Cp1252FromUtf8(archive.stem().string()) + ".gam";
}

TableLoad LoadTableFile(const std::filesystem::path& path, TableFile& file, std::string& message) {
    file = TableFile{};
    auto bytes = ReadFileBytes(path);
    if (!bytes) {
        message = "Cannot open " + path.string() + ".";
        return TableLoad::Unreadable;
    }
    file.Bytes = std::move(*bytes);
    std::span<const std::uint8_t> table = file.Bytes;
    if (file.Bytes.size() >= 4 && std::equal(file.Bytes.begin(), file.Bytes.begin() + 4, "HOG2")) {
        file.InArchive = true;
        std::vector<HogDirectoryEntry> entries;
        if (ReadHogEntries(file.Bytes, entries) != HogStatus::Ok) {
            message = path.string() + " is a damaged archive.";
            return TableLoad::Damaged;
        }
        const std::string wanted = MissionTableName(path);
        const HogDirectoryEntry* found = nullptr;
        for (const HogDirectoryEntry& e : entries) {
            if (EqualsIgnoringCase(e.Name, wanted)) {
                found = &e;
                break;
            }
            if (std::string_view(HogEntryKind(e.Name)) == "table") found = &e;
        }
        if (found == nullptr) {
            file.Entry = wanted;
            message = "No GAM table in " + path.string() + ".";
            return TableLoad::NoTable;
        }
        if (found->Offset > file.Bytes.size() ||
            found->Length > file.Bytes.size() - found->Offset) {
            message = path.string() + ": the table runs past the end of the archive.";
            return TableLoad::Damaged;
        }
        file.Entry = found->Name;
        table = table.subspan(found->Offset, found->Length);
    }
    std::string error;
    auto read = ReadGamPages(table, error);
    if (!read) {
        message =
            path.string() + (file.InArchive ? ":" + Utf8From1252(file.Entry) : "") + ": " + error;
        return TableLoad::Damaged;
    }
    file.Table = std::move(*read);
    return TableLoad::Ok;
}

std::string SaveTableFile(const TableFile& source, const GamTable& table,
                          const std::filesystem::path& out) {
    const std::vector<std::uint8_t> pages = WriteGamPages(table);
    if (!source.InArchive) return WriteFileReplacing(out, pages);
    auto archive = ReplaceHogEntry(source.Bytes, source.Entry, pages);
    if (!archive) return "The archive could not be read again.";
    return WriteFileReplacing(out, *archive);
}

std::vector<NamedTable> ReadGameTables(const clsHOG& hog, const Settings& settings,
                                       std::vector<std::string>& skipped) {
    std::vector<NamedTable> tables;
    std::vector<std::pair<std::string, std::string>> sources;  // label, path
    static constexpr const char* kLabels[] = {"", "d3.hog", "extra13.hog", "mission"};
    for (int slot = 1; slot <= 3; ++slot) {
        const HogSlot& s = hog.Slots[static_cast<std::size_t>(slot)];
        if (s.Loaded && !s.Path.empty()) sources.emplace_back(kLabels[slot], s.Path);
    }
    if (ContainsIgnoringCase(settings.MN3GAMPath, ".gam")) {
        if (auto loose = FindFileIgnoringCase(settings.MN3GAMPath))
            sources.emplace_back(loose->filename().string(), loose->string());
    }
    for (const auto& [label, path] : sources) {
        TableFile file;
        std::string message;
        const TableLoad load = LoadTableFile(path, file, message);
        if (load == TableLoad::Ok) {
            tables.push_back({label, std::move(file.Table)});
        } else if (load != TableLoad::NoTable) {
            skipped.push_back(message);
        }
    }
    return tables;
}

}  // namespace mw
