#include <ostream>

#include "cli/cli.h"
#include "cli/json_writer.h"
#include "gamedata/file_names.h"
#include "gamedata/hog.h"
#include "model/file_io.h"
#include "model/text_codec.h"

namespace mw {
namespace {

constexpr const char* kHogUsage =
    "Usage: meshwright-cli hog list ARCHIVE [--json]\n"
    "       meshwright-cli hog extract ARCHIVE ENTRY OUT\n"
    "       meshwright-cli hog create|add|remove ARCHIVE ... (see hog create --help)\n"
    "Lists the files of a HOG2 archive (.hog, .mn3), or writes one of them to OUT (the\n"
    "entry's name is matched ignoring case).\n";

int ReadEntries(const std::string& archive, std::vector<HogDirectoryEntry>& entries,
                std::ostream& err) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(archive, ec)) {
        err << "Cannot open " << archive << "\n";
        return kExitNoInput;
    }
    const HogStatus status = ReadHogFileEntries(archive, entries);
    if (status != HogStatus::Ok) {
        err << archive
            << (status == HogStatus::NotHog ? " is not a HOG2 archive\n" : " has no data offset\n");
        return static_cast<int>(status);
    }
    return 0;
}

int List(const std::string& archive, bool json, std::ostream& out, std::ostream& err) {
    std::vector<HogDirectoryEntry> entries;
    if (const int status = ReadEntries(archive, entries, err)) return status;
    if (json) {
        JsonWriter j;
        j.beginArray();
        for (const auto& e : entries) {
            j.beginObject().field("name", Utf8From1252(e.Name));
            j.field("offset", static_cast<std::int64_t>(e.Offset));
            j.field("length", static_cast<std::int64_t>(e.Length));
            j.field("kind", HogEntryKind(e.Name)).endObject();
        }
        j.endArray();
        out << j.str() << "\n";
        return 0;
    }
    for (const auto& e : entries) {
        out << Utf8From1252(e.Name) << "  " << e.Length << " bytes at " << e.Offset << "  "
            << HogEntryKind(e.Name) << "\n";
    }
    out << entries.size() << " files\n";
    return 0;
}

}  // namespace

int ExtractHogEntry(const std::string& archive, const std::string& entry,
                    std::vector<std::uint8_t>& bytes, std::ostream& err) {
    std::vector<HogDirectoryEntry> entries;
    if (const int status = ReadEntries(archive, entries, err)) return status;
    for (const auto& e : entries) {
        if (!EqualsIgnoringCase(LowerCase1252(e.Name), LowerCase1252(Cp1252FromUtf8(entry)))) {
            continue;
        }
        auto data = ReadArchiveEntry(archive, e);
        if (!data) {
            err << "The archive ends inside " << entry << "\n";
            return kExitNoInput;
        }
        bytes = std::move(*data);
        return 0;
    }
    err << "No file " << entry << " in " << archive << "\n";
    return kExitNoInput;
}

int HogCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kHogUsage;
        return 0;
    }
    if (!args.empty() && (args[0] == "create" || args[0] == "add" || args[0] == "remove"))
        return HogWriteCommand(args, out, err);
    if (args.size() >= 2 && args[0] == "list") {
        const bool json = args.size() == 3 && args[2] == "--json";
        if (args.size() == 2 || json) return List(args[1], json, out, err);
    }
    if (args.size() == 4 && args[0] == "extract") {
        std::vector<std::uint8_t> bytes;
        if (const int status = ExtractHogEntry(args[1], args[2], bytes, err)) return status;
        const std::string failure = WriteFileReplacing(args[3], bytes);
        if (!failure.empty()) {
            err << failure << "\n";
            return kExitCantCreate;
        }
        return 0;
    }
    err << kHogUsage;
    return kExitUsage;
}

}  // namespace mw
