#include "gamedata/hog.h"

#include <algorithm>

#include "gamedata/file_names.h"
#include "model/byte_cursor.h"
#include "model/text_codec.h"

namespace mw {
namespace {

constexpr std::size_t kHeaderSize = 68;
constexpr std::size_t kEntrySize = 48;
constexpr std::size_t kNameSize = 36;

// The lookup key of a texture entry: "brick.ogf" gives "brick." (with its dot).
std::string EntryKey(std::string_view lowerField) {
    std::string name = EntryName(lowerField);
    name.resize(name.size() >= 3 ? name.size() - 3 : 0);
    return name;
}

// The archive file of a setting, when the setting names such an archive and it exists.
std::optional<std::filesystem::path> ArchiveFile(const std::string& setting,
                                                 std::initializer_list<const char*> names) {
    bool named = false;
    for (const char* n : names)
        named = named || ContainsIgnoringCase(setting, n);
    if (!named) return std::nullopt;
    auto file = FindFileIgnoringCase(setting);
    if (!file) return std::nullopt;
    for (const char* n : names) {
        if (ContainsIgnoringCase(file->filename().string(), n)) return file;
    }
    return std::nullopt;
}

std::optional<std::filesystem::path> D3Archive(const Settings& s) {
    return ArchiveFile(s.D3HogPath, {"d3.hog"});
}
std::optional<std::filesystem::path> Extra13Archive(const Settings& s) {
    return ArchiveFile(s.Extra13Path, {"extra13.hog"});
}
std::optional<std::filesystem::path> MissionArchive(const Settings& s) {
    return ArchiveFile(s.MN3GAMPath, {".hog", ".mn3"});
}

}  // namespace

std::string EntryName(std::string_view field) {
    const auto nul = field.find('\0');
    if (nul != std::string_view::npos) field = field.substr(0, nul);
    return std::string(TrimSpaces(field));
}

HogStatus ReadHogEntries(std::span<const std::uint8_t> bytes,
                         std::vector<HogDirectoryEntry>& entries) {
    entries.clear();
    ByteReader r(bytes);
    if (r.text(4) != "HOG2") return HogStatus::NotHog;
    const std::int32_t count = r.i32();
    const std::int32_t dataOffset = r.i32();
    if (!r.ok()) return HogStatus::NotHog;
    if (dataOffset == 0) return HogStatus::NoDataOffset;
    r.seek(kHeaderSize);
    if (!r.canHold(count, kEntrySize)) return HogStatus::NotHog;
    entries.reserve(static_cast<std::size_t>(count));
    std::uint64_t position = static_cast<std::uint32_t>(dataOffset);
    for (std::int32_t i = 0; i < count; ++i) {
        HogDirectoryEntry e;
        e.Field = r.text(kNameSize);
        e.Name = e.Field.substr(0, e.Field.find('\0'));
        r.u32();
        e.Length = r.u32();
        r.u32();
        e.Offset = position;
        position += e.Length;
        entries.push_back(std::move(e));
    }
    return HogStatus::Ok;
}

void clsHOG::Reset() {
    Models.clear();
    Textures.clear();
    GamEntries = {};
    Slots = {};
    for (auto& keys : sortedKeys_)
        keys.clear();
}

HogStatus ReadHogFileEntries(const std::string& path, std::vector<HogDirectoryEntry>& entries) {
    entries.clear();
    std::ifstream in(path, std::ios::binary);
    std::vector<std::uint8_t> bytes(kHeaderSize);
    in.read(reinterpret_cast<char*>(bytes.data()), kHeaderSize);
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    ByteReader h(bytes);
    h.skip(4);
    const std::int32_t count = h.i32();
    std::error_code ec;
    const auto fileSize = std::filesystem::file_size(path, ec);
    // A directory that the file cannot hold is left for ReadHogEntries to refuse.
    if (h.ok() && count > 0 && !ec && bytes.size() == kHeaderSize &&
        static_cast<std::uint64_t>(count) * kEntrySize <= fileSize - kHeaderSize) {
        bytes.resize(kHeaderSize + static_cast<std::size_t>(count) * kEntrySize);
        in.read(reinterpret_cast<char*>(bytes.data() + kHeaderSize),
                static_cast<std::streamsize>(bytes.size() - kHeaderSize));
        bytes.resize(kHeaderSize + static_cast<std::size_t>(in.gcount()));
    }
    return ReadHogEntries(bytes, entries);
}

const char* HogEntryKind(std::string_view name) {
    const auto dot = name.find('.');
    if (dot == std::string_view::npos) return "other";
    const std::string ext = LowerCase1252(name.substr(dot, 4));
    if (ext == ".oof") return "model";
    if (ext == ".ogf") return "texture";
    if (ext == ".oaf") return "animation";
    if (ext == ".gam") return "table";
    return "other";
}

HogStatus clsHOG::ReadHogDirectory(const std::string& path, int slot, ProgressSink* progress) {
    std::vector<HogDirectoryEntry> entries;
    const HogStatus status = ReadHogFileEntries(path, entries);
    if (status == HogStatus::Ok) AddEntries(entries, slot, progress);
    return status;
}

void clsHOG::AddEntries(const std::vector<HogDirectoryEntry>& entries, int slot,
                        ProgressSink* progress) {
    const auto slotByte = static_cast<std::uint8_t>(slot);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        int percent = PercentOf(static_cast<double>(i + 1), static_cast<double>(entries.size()));
        ShowProgress(progress, percent, "");
        const HogDirectoryEntry& e = entries[i];
        const std::string_view kind = HogEntryKind(e.Name);
        if (kind == "model") {
            Models.push_back({e.Field, e.Offset, e.Length, slotByte});
        } else if (kind == "texture" || kind == "animation") {
            Textures.push_back(
                {LowerCase1252(e.Field), e.Offset, e.Length, slotByte, kind == "texture"});
        } else if (kind == "table") {
            GamEntries[static_cast<std::size_t>(slot)] = {e.Field, e.Offset, e.Length};
        }
    }
}

void clsHOG::CloseSlot(int slot, int firstModel, int firstTexture) {
    HogSlot& s = Slots[static_cast<std::size_t>(slot)];
    s.FirstModel = firstModel;
    s.FirstTexture = firstTexture;
    s.LastModel = static_cast<int>(Models.size()) - 1;
    s.LastTexture = static_cast<int>(Textures.size()) - 1;
    auto& keys = sortedKeys_[static_cast<std::size_t>(slot)];
    keys.clear();
    for (int t = s.FirstTexture; t <= s.LastTexture; ++t) {
        keys.emplace_back(EntryKey(Textures[static_cast<std::size_t>(t)].Name), t);
    }
    std::sort(keys.begin(), keys.end());
}

void clsHOG::ReadHOGs(Settings& settings, ProgressSink* progress) {
    if (progress != nullptr) progress->Begin();
    int percent = 0;
    ShowProgress(progress, percent, "Reading HOG data...");
    Reset();

    auto readSlot = [&](int slot, const std::filesystem::path& file, const std::string& text) {
        int p = 0;
        ShowProgress(progress, p, text);
        HogSlot& s = Slots[static_cast<std::size_t>(slot)];
        const int firstModel = static_cast<int>(Models.size());
        const int firstTexture = static_cast<int>(Textures.size());
        if (ReadHogDirectory(file.string(), slot, progress) == HogStatus::Ok) {
            s.Path = file.string();
            s.Loaded = true;
        }
        CloseSlot(slot, firstModel, firstTexture);
    };

    if (auto d3 = D3Archive(settings)) {
        readSlot(kSlotD3, *d3, "Reading d3.hog...");
    } else {
        settings.D3HogPath.clear();
    }
    if (auto extra = Extra13Archive(settings)) {
        readSlot(kSlotExtra13, *extra, "Reading extra13.hog...");
    } else {
        settings.Extra13Path.clear();
    }
    if (auto mission = MissionArchive(settings)) {
        readSlot(kSlotMission, *mission, "Reading " + settings.MN3GAMPath + "...");
    }
    if (progress != nullptr) progress->End();
}

int clsHOG::FindTexture(std::string_view name, int slot) const {
    std::string key = LowerCase1252(name);
    if (key.empty() || key.back() != '.') key += '.';
    const auto& keys = sortedKeys_[static_cast<std::size_t>(slot)];
    const auto it = std::lower_bound(keys.begin(), keys.end(), std::make_pair(key, -1));
    return it != keys.end() && it->first == key ? it->second : -1;
}

TexLookup clsHOG::GetTexIndex(std::string_view name, const Settings& settings) const {
    if (name.empty()) return {};
    if (!settings.OGFPath.empty()) {
        for (const char* ext : {".ogf", ".oaf"}) {
            if (auto file = FindFileIgnoringCase(settings.OGFPath + std::string(name) + ext)) {
                return {kLooseImageIndex, file->string()};
            }
        }
    }
    // An archive counts only while its file is still there: one removed since it was indexed
    // hands the lookup on to the next archive.
    using Finder = std::optional<std::filesystem::path> (*)(const Settings&);
    auto search = [&](int slot, Finder archive) {
        return archive(settings) ? FindTexture(name, slot) : -1;
    };
    int index = search(kSlotMission, MissionArchive);
    if (index < 0) index = search(kSlotExtra13, Extra13Archive);
    if (index < 0) index = search(kSlotD3, D3Archive);
    if (index >= 0) return {index, {}};
    return {};
}

ArchiveReader::ArchiveReader(const clsHOG& hog) {
    for (int slot = 1; slot <= 3; ++slot) {
        const HogSlot& s = hog.Slots[static_cast<std::size_t>(slot)];
        if (!s.Loaded) continue;
        std::error_code ec;
        const auto size = std::filesystem::file_size(s.Path, ec);
        if (ec) continue;
        files_[static_cast<std::size_t>(slot)].open(s.Path, std::ios::binary);
        sizes_[static_cast<std::size_t>(slot)] = size;
    }
}

bool ArchiveReader::IsOpen(int slot) const {
    return slot >= 1 && slot <= 3 && files_[static_cast<std::size_t>(slot)].is_open();
}

std::optional<std::vector<std::uint8_t>> ArchiveReader::Read(int slot, std::uint64_t offset,
                                                             std::uint64_t length) {
    if (!IsOpen(slot)) return std::nullopt;
    auto& file = files_[static_cast<std::size_t>(slot)];
    const std::uint64_t size = sizes_[static_cast<std::size_t>(slot)];
    if (offset > size) return std::nullopt;
    length = std::min(length, size - offset);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(length));
    file.clear();
    file.seekg(static_cast<std::streamoff>(offset));
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(length));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

std::optional<std::vector<std::uint8_t>> ReadArchiveEntry(const std::string& archive,
                                                          const HogDirectoryEntry& entry) {
    clsHOG single;
    single.Slots[1] = {archive, true, 0, -1, 0, -1};
    ArchiveReader reader(single);
    auto bytes = reader.Read(1, entry.Offset, entry.Length);
    if (!bytes || bytes->size() != entry.Length) return std::nullopt;
    return bytes;
}

}  // namespace mw
