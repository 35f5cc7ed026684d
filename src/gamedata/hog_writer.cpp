#include "gamedata/hog_writer.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "gamedata/file_names.h"
#include "gamedata/hog.h"
#include "model/byte_cursor.h"
#include "model/file_io.h"
#include "model/text_codec.h"

namespace mw {
namespace {

constexpr std::size_t kHeaderSize = 68;
constexpr std::size_t kEntrySize = 48;
constexpr std::size_t kNameField = 36;

bool SameName(const std::string& a, const std::string& b) {
    return HogNamesEqual(a, b);
}

// A name for people: archive names are Windows-1252 bytes.
std::string Shown(const std::string& name) {
    return Utf8From1252(name);
}

// Why a name cannot stand in an archive's directory, or empty.
std::string NameProblem(const std::string& name) {
    if (name.empty()) return "An archive entry needs a name.";
    if (name.size() > kHogNameLength) {
        return "\"" + Shown(name) + "\" is longer than the " + std::to_string(kHogNameLength) +
               " characters an archive entry's name holds.";
    }
    return {};
}

// The files named on the command line, read; or the reason they cannot go in (`unreadable`
// set when that reason is a file that cannot be read).
std::string ReadInputs(const std::vector<std::filesystem::path>& paths, std::vector<HogFile>& out,
                       bool& unreadable) {
    for (const auto& path : paths) {
        const std::string shown = path.filename().string();
        const auto name = HogNameFromUtf8(shown);
        if (!name) {
            return "\"" + shown +
                   "\" has a character the game's file names (Windows-1252) cannot hold.";
        }
        HogFile file{*name, {}};
        if (std::string problem = NameProblem(file.Name); !problem.empty()) return problem;
        for (const HogFile& earlier : out) {
            if (SameName(earlier.Name, file.Name)) {
                return "\"" + Shown(earlier.Name) + "\" and \"" + shown +
                       "\" are the same name in an archive (names ignore case).";
            }
        }
        auto bytes = ReadFileBytes(path);
        if (!bytes) {
            unreadable = true;
            return "Cannot read " + path.string() + ".";
        }
        file.Data = std::move(*bytes);
        out.push_back(std::move(file));
    }
    return {};
}

std::string ReadArchive(const std::filesystem::path& archive, std::vector<HogFile>& out,
                        bool& unreadable) {
    const auto bytes = ReadFileBytes(archive);
    if (!bytes) {
        unreadable = true;
        return "Cannot read " + archive.string() + ".";
    }
    auto files = ReadHogFiles(*bytes);
    if (!files) return archive.string() + " is not a HOG2 archive.";
    out = std::move(*files);
    return {};
}

HogEdit Failed(std::string message) {
    HogEdit edit;
    edit.Error = std::move(message);
    return edit;
}

HogEdit Unreadable(std::string message) {
    HogEdit edit = Failed(std::move(message));
    edit.InputUnreadable = true;
    return edit;
}

}  // namespace

bool HogNameLess(std::string_view a, std::string_view b) {
    return AsciiLower(a) < AsciiLower(b);  // std::string compares bytes as unsigned
}

bool HogNamesEqual(std::string_view a, std::string_view b) {
    return EqualsIgnoringCase(a, b);
}

std::optional<std::string> HogNameFromUtf8(std::string_view utf8) {
    return Cp1252FromUtf8Exact(utf8);
}

int FirstOutOfOrder(const std::vector<std::string>& names) {
    for (std::size_t i = 1; i < names.size(); ++i) {
        if (HogNameLess(names[i], names[i - 1])) return static_cast<int>(i);
    }
    return -1;
}

std::vector<std::uint8_t> BuildHOG(std::vector<HogFile> files, std::uint32_t time) {
    std::stable_sort(files.begin(), files.end(), [](const HogFile& a, const HogFile& b) {
        return HogNameLess(a.Name, b.Name);
    });
    std::size_t total = kHeaderSize + kEntrySize * files.size();
    for (const HogFile& f : files)
        total += f.Data.size();
    ByteWriter w;
    w.reserve(total);
    w.raw("HOG2");
    w.i32(static_cast<std::int32_t>(files.size()));
    w.i32(static_cast<std::int32_t>(kHeaderSize + kEntrySize * files.size()));
    for (std::size_t i = 12; i < kHeaderSize; ++i)
        w.u8(0xFF);
    for (const HogFile& f : files) {
        std::string field = f.Name.substr(0, kHogNameLength);
        field.resize(kNameField, '\0');
        w.raw(field);
        w.u32(0);  // flags
        w.u32(static_cast<std::uint32_t>(f.Data.size()));
        w.u32(time);
    }
    std::vector<std::uint8_t> bytes = w.release();
    for (const HogFile& f : files)
        bytes.insert(bytes.end(), f.Data.begin(), f.Data.end());
    return bytes;
}

std::optional<std::vector<HogFile>> ReadHogFiles(std::span<const std::uint8_t> bytes) {
    std::vector<HogDirectoryEntry> entries;
    if (ReadHogEntries(bytes, entries) != HogStatus::Ok) return std::nullopt;
    std::vector<HogFile> files;
    files.reserve(entries.size());
    for (const HogDirectoryEntry& e : entries) {
        if (e.Offset > bytes.size() || e.Length > bytes.size() - e.Offset) return std::nullopt;
        const auto* begin = bytes.data() + e.Offset;
        files.push_back({e.Name, {begin, begin + e.Length}});
    }
    return files;
}

std::optional<std::vector<std::uint8_t>> ReplaceHogEntry(std::span<const std::uint8_t> archive,
                                                         const std::string& name,
                                                         std::span<const std::uint8_t> data) {
    std::vector<HogDirectoryEntry> entries;
    if (ReadHogEntries(archive, entries) != HogStatus::Ok) return std::nullopt;
    struct Entry {
        std::span<const std::uint8_t> Record;  // the 48 directory bytes as stored
        std::span<const std::uint8_t> Data;
        std::string Name;
    };
    std::vector<Entry> kept;
    bool replaced = false;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const HogDirectoryEntry& e = entries[i];
        if (e.Offset > archive.size() || e.Length > archive.size() - e.Offset) return std::nullopt;
        Entry entry{archive.subspan(kHeaderSize + i * kEntrySize, kEntrySize),
                    archive.subspan(e.Offset, e.Length), e.Name};
        if (!replaced && SameName(e.Name, name)) {
            entry.Data = data;
            replaced = true;
        }
        kept.push_back(entry);
    }
    std::vector<std::uint8_t> added(kEntrySize, 0);
    if (!replaced) {
        std::copy_n(name.begin(), std::min(name.size(), kHogNameLength), added.begin());
        const auto at = std::find_if(kept.begin(), kept.end(),
                                     [&name](const Entry& e) { return HogNameLess(name, e.Name); });
        kept.insert(at, Entry{added, data, name});
    }
    ByteWriter w;
    w.raw("HOG2");
    w.i32(static_cast<std::int32_t>(kept.size()));
    w.i32(static_cast<std::int32_t>(kHeaderSize + kEntrySize * kept.size()));
    w.raw(std::string_view(reinterpret_cast<const char*>(archive.data() + 12), kHeaderSize - 12));
    for (const Entry& e : kept) {
        const std::size_t at = w.size();
        w.raw(std::string_view(reinterpret_cast<const char*>(e.Record.data()), kEntrySize));
        w.patchI32(at + kNameField + 4, static_cast<std::int32_t>(e.Data.size()));
    }
    std::vector<std::uint8_t> bytes = w.release();
    for (const Entry& e : kept)
        bytes.insert(bytes.end(), e.Data.begin(), e.Data.end());
    return bytes;
}

std::uint32_t ArchiveTime(const char* sourceDateEpoch) {
    if (sourceDateEpoch == nullptr) return 0;
    const char* end = sourceDateEpoch + std::strlen(sourceDateEpoch);
    std::uint32_t time = 0;
    const auto [at, error] = std::from_chars(sourceDateEpoch, end, time);
    return error == std::errc{} && at == end ? time : 0;
}

HogEdit WriteHogFiles(const std::filesystem::path& archive, std::vector<HogFile> files,
                      std::uint32_t time) {
    HogEdit edit;
    for (const HogFile& f : files) {
        if (std::string problem = NameProblem(f.Name); !problem.empty()) return Failed(problem);
        edit.Added.push_back(Shown(f.Name));
    }
    const std::string failure = WriteFileReplacing(archive, BuildHOG(std::move(files), time));
    if (!failure.empty()) return Failed(failure);
    return edit;
}

HogEdit CreateHog(const std::filesystem::path& archive,
                  const std::vector<std::filesystem::path>& paths, std::uint32_t time) {
    std::vector<HogFile> files;
    bool unreadable = false;
    if (std::string problem = ReadInputs(paths, files, unreadable); !problem.empty())
        return unreadable ? Unreadable(problem) : Failed(problem);
    return WriteHogFiles(archive, std::move(files), time);
}

HogEdit AddToHog(const std::filesystem::path& archive,
                 const std::vector<std::filesystem::path>& paths, std::uint32_t time) {
    std::vector<HogFile> files, inputs;
    bool unreadable = false;
    std::string problem = ReadArchive(archive, files, unreadable);
    if (problem.empty()) problem = ReadInputs(paths, inputs, unreadable);
    if (!problem.empty()) return unreadable ? Unreadable(problem) : Failed(problem);
    HogEdit edit;
    for (HogFile& input : inputs) {
        const auto same = std::find_if(files.begin(), files.end(), [&input](const HogFile& f) {
            return SameName(f.Name, input.Name);
        });
        if (same != files.end()) {
            edit.Replaced.push_back(Shown(input.Name));
            *same = std::move(input);
        } else {
            edit.Added.push_back(Shown(input.Name));
            files.push_back(std::move(input));
        }
    }
    const std::string failure = WriteFileReplacing(archive, BuildHOG(std::move(files), time));
    if (!failure.empty()) return Failed(failure);
    return edit;
}

HogEdit RemoveFromHog(const std::filesystem::path& archive, const std::vector<std::string>& names,
                      std::uint32_t time) {
    std::vector<HogFile> files;
    bool unreadable = false;
    if (std::string problem = ReadArchive(archive, files, unreadable); !problem.empty())
        return unreadable ? Unreadable(problem) : Failed(problem);
    HogEdit edit;
    for (const std::string& shown : names) {
        const std::string name = Cp1252FromUtf8(shown);
        const auto same = std::find_if(files.begin(), files.end(), [&name](const HogFile& f) {
            return SameName(f.Name, name);
        });
        if (same == files.end())
            return Failed("\"" + shown + "\" is not in " + archive.string() + ".");
        edit.Removed.push_back(Shown(same->Name));
        files.erase(same);
    }
    const std::string failure = WriteFileReplacing(archive, BuildHOG(std::move(files), time));
    if (!failure.empty()) return Failed(failure);
    return edit;
}

}  // namespace mw
