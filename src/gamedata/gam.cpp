#include "gamedata/gam.h"

#include "gamedata/file_names.h"
#include "model/byte_cursor.h"
#include "model/file_io.h"
#include "model/text_codec.h"

namespace mw {
namespace {

constexpr std::uint8_t kTexturePage = 1;
constexpr std::uint8_t kGenericPage = 10;

// A NUL-terminated name sought within the next `span` bytes; the reader continues after
// the NUL. Fails the reader when there is no NUL in the span.
std::string SpanName(ByteReader& r, std::size_t span) {
    const std::size_t start = r.pos();
    const std::string field = r.text(std::min(span, r.remaining()));
    const auto nul = field.find('\0');
    if (nul == std::string::npos) {
        r.fail();
        return {};
    }
    r.seek(start + nul + 1);
    return field.substr(0, nul);
}

std::string CleanName(std::string_view text) {
    return LowerCase1252(EntryName(text));
}

GamTextureProperties ReadProperties(ByteReader& r) {
    GamTextureProperties p;
    const auto block = r.take(p.Block.size());
    if (!block.empty()) std::copy(block.begin(), block.end(), p.Block.begin());
    p.Extra = r.u32();
    p.GamFlags = r.u32();
    return p;
}

bool ReadTexturePage(ByteReader& r, std::uint64_t base, std::uint8_t source, GamTextureEntry& e) {
    r.u16();  // version
    e.TexName = SpanName(r, 35);
    const std::string file = EntryName(SpanName(r, 35));
    SpanName(r, 35);
    e.PropertyPos = base + r.pos();
    e.Source = source;
    e.Properties = ReadProperties(r);
    e.FileName = LowerCase1252(file.substr(0, file.size() >= 4 ? file.size() - 4 : 0));
    return r.ok();
}

bool ReadGenericPage(ByteReader& r, GamObjectEntry& e) {
    const auto version = static_cast<std::int16_t>(r.u16());
    const std::uint8_t type = r.u8();
    e.ObjName = CleanName(SpanName(r, 35));
    e.Model1 = CleanName(SpanName(r, 35));
    e.Model2 = CleanName(SpanName(r, 35));
    e.Model3 = CleanName(SpanName(r, 35));
    r.skip(12);
    r.skip(version < 24 ? 1 : 2);
    if (type == 7 && version > 24) r.skip(2);
    SpanName(r, 35);
    if (version > 17) SpanName(r, 32);
    if (version > 18) SpanName(r, 35);
    if (r.u8() != 0) SpanName(r, 1024);
    SpanName(r, 35);
    r.skip(8);
    // The two property blocks are taken as 68 and 50 bytes on disk, as in memory.
    r.skip(68);  // first property block
    r.skip(4);
    r.skip(49);  // second property block, whose last byte is the kind
    e.Kind = r.u8();
    return r.ok();
}

bool NameMatches(const std::string& a, const std::string& b, bool ignoreCase) {
    return ignoreCase ? LowerCase1252(a) == LowerCase1252(b) : a == b;
}

}  // namespace

void clsGAM::ReadGamTable(std::span<const std::uint8_t> table, std::uint64_t base,
                          std::uint8_t source, ProgressSink* progress) {
    std::size_t position = 0;
    while (position < table.size() && !Overflow) {
        int percent = PercentOf(static_cast<double>(position), static_cast<double>(table.size()));
        ShowProgress(progress, percent, "");
        ByteReader r(table);
        r.seek(position);
        const std::uint8_t type = r.u8();
        const std::size_t lengthPos = r.pos();
        const std::int32_t length = r.i32();
        if (!r.ok() || length < 0) break;
        const std::size_t next = lengthPos + static_cast<std::size_t>(length);

        if (type == kTexturePage) {
            GamTextureEntry e;
            if (ReadTexturePage(r, base, source, e)) {
                Textures.push_back(std::move(e));
                if (static_cast<int>(Textures.size()) >= kMaxGamEntries) Overflow = true;
            }
        } else if (type == kGenericPage) {
            GamObjectEntry e;
            if (ReadGenericPage(r, e)) {
                Objects.push_back(std::move(e));
                if (static_cast<int>(Objects.size()) >= kMaxGamEntries) Overflow = true;
            }
        }
        position = next;
    }
}

void clsGAM::ReadGAMs(const clsHOG& hog, Settings& settings, ProgressSink* progress,
                      MessageSink* messages) {
    if (progress != nullptr) progress->Begin();
    int percent = 0;
    ShowProgress(progress, percent, "Reading GAM data...");

    std::optional<std::filesystem::path> loose;
    if (ContainsIgnoringCase(settings.MN3GAMPath, ".gam")) {
        loose = FindFileIgnoringCase(settings.MN3GAMPath);
        if (!loose || !ContainsIgnoringCase(loose->filename().string(), ".gam")) {
            loose.reset();
            settings.MN3GAMPath.clear();
        }
    }
    Textures.clear();
    Objects.clear();
    Overflow = false;

    ArchiveReader archives(hog);
    for (int slot = 1; slot <= 3 && !Overflow; ++slot) {
        const HogGamEntry& entry = hog.GamEntries[static_cast<std::size_t>(slot)];
        if (!archives.IsOpen(slot) || entry.Length == 0) continue;
        int p = 0;
        ShowProgress(progress, p, "Reading " + EntryName(entry.Name) + "...");
        if (auto bytes = archives.Read(slot, entry.Offset, entry.Length)) {
            ReadGamTable(*bytes, entry.Offset, static_cast<std::uint8_t>(slot), progress);
        }
    }
    if (!Overflow && loose) {
        int p = 0;
        ShowProgress(progress, p, "Reading " + settings.MN3GAMPath + "...");
        if (auto bytes = ReadFileBytes(*loose)) ReadGamTable(*bytes, 0, kGamSourceLoose, progress);
    }
    if (progress != nullptr) progress->End();
    if (Overflow && messages != nullptr) {
        messages->Information("Maximum number of GAM entries reached!");
    }
}

std::vector<TextureNames> clsGAM::GetGAMTexInfo(const ModelData& model,
                                                std::vector<TextureSlot>& slots) const {
    std::vector<TextureNames> names;
    names.reserve(model.Textures.size());
    for (std::size_t t = 0; t < model.Textures.size(); ++t) {
        const Texture& tex = model.Textures[t];
        TextureNames resolved{tex.GameName, tex.Name, false};
        const GamTextureEntry* match = nullptr;
        // By file name first, then by game name; an empty name looks the game name up.
        const std::string& key = tex.Name.empty() ? tex.GameName : tex.Name;
        for (const auto& e : Textures) {
            if (NameMatches(tex.Name.empty() ? e.TexName : e.FileName, key, false)) {
                match = &e;
                break;
            }
        }
        if (match != nullptr) {
            if (tex.Name.empty()) {
                resolved.FileName = match->FileName;
            } else {
                resolved.GameName = match->TexName;
            }
        } else {
            for (const auto& e : Textures) {
                if (NameMatches(tex.Name.empty() ? e.FileName : e.TexName, key, true)) {
                    match = &e;
                    resolved = {e.TexName, e.FileName, true};
                    break;
                }
            }
        }
        resolved.InTable = match != nullptr;
        if (match != nullptr && t < slots.size()) slots[t].Gam = match->Properties;
        names.push_back(std::move(resolved));
    }
    return names;
}

void ApplyTextureNames(ModelData& model, const std::vector<TextureNames>& names) {
    for (std::size_t t = 0; t < model.Textures.size() && t < names.size(); ++t) {
        model.Textures[t].GameName = names[t].GameName;
        model.Textures[t].Name = names[t].FileName;
    }
}

std::uint8_t clsGAM::GetGAMOBJInfo(std::string_view modelPath) const {
    if (!ContainsIgnoringCase(modelPath, ".oof")) return 0;
    const std::string file = LowerCase1252(FileNameOf(modelPath));
    for (const auto& o : Objects) {
        if (o.Model1 == file || o.Model2 == file || o.Model3 == file) return o.Kind;
    }
    return 0;
}

}  // namespace mw
