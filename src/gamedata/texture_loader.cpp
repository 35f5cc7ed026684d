#include "gamedata/texture_loader.h"

#include <cmath>
#include <random>

#include "gamedata/file_names.h"
#include "model/file_io.h"

namespace mw {

const char* TextureSourceName(TextureSource source) {
    switch (source) {
        case TextureSource::Missing:
            return "missing";
        case TextureSource::Loose:
            return "loose";
        case TextureSource::Mission:
            return "mission";
        case TextureSource::Extra13:
            return "extra13.hog";
        case TextureSource::D3:
            return "d3.hog";
    }
    return "missing";
}

std::vector<std::uint32_t> MakeMissingTexture(std::uint32_t seed) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::vector<std::uint32_t> pixels(kMissingTextureSize * kMissingTextureSize);
    for (auto& p : pixels) {
        const double r1 = unit(rng), r2 = unit(rng), r3 = unit(rng);
        const auto channel = [](double r) { return static_cast<std::uint32_t>(r * 256.0) & 255u; };
        p = channel(r3) | channel(r1) << 8 | channel(r2) << 16 | 255u << 24;
    }
    return pixels;
}

std::vector<bool> FoundInGameData(const LoadedTextures& loaded) {
    std::vector<bool> found;
    for (const ResolvedTexture& r : loaded.Resolved)
        found.push_back(r.Source != TextureSource::Missing);
    return found;
}

std::optional<DecodedImage> DecodeGameTexture(std::string_view name, GameData& data,
                                              const Settings& settings) {
    const TexLookup found = data.Hog.GetTexIndex(name, settings);
    std::optional<std::vector<std::uint8_t>> bytes;
    bool animation = false;
    if (found.index == kLooseImageIndex) {
        bytes = ReadFileBytes(found.path);
        animation = ContainsIgnoringCase(found.path, ".oaf");
    } else if (found.index >= 0) {
        const HogTextureEntry& e = data.Hog.Textures[static_cast<std::size_t>(found.index)];
        ArchiveReader archives(data.Hog);
        bytes = archives.Read(e.Slot, e.Offset, e.Length);
        animation = !e.IsOGF;
    }
    if (!bytes) return std::nullopt;
    ByteReader r(*bytes);
    if (animation) {
        r.skip((*bytes)[0] == 127 ? 7 : 17);  // the animation header; frame 0 follows
    }
    if (data.Ogf.ReadOGF(r) != OgfStatus::Ok) return std::nullopt;
    return std::move(data.Ogf.Image);
}

DecodedImage GeneratedGlowImage() {
    DecodedImage image;
    image.Width = image.Height = 64;
    image.Pixels.resize(64 * 64);
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x) {
            const double d = std::sqrt((x - 32.0) * (x - 32.0) + (y - 32.0) * (y - 32.0));
            double v = std::nearbyint(32.0 - d);
            if (v < 0) v = 0;
            const auto b = static_cast<std::uint32_t>(std::nearbyint(v * 255.0 / 32.0));
            image.Pixels[static_cast<std::size_t>(y * 64 + x)] = b | b << 8 | b << 16 | 255u << 24;
        }
    }
    return image;
}

namespace {

// NAME.png or NAME.tga beside the model, else in the loose image folder; its Name is the
// file's path.
std::optional<DecodedImage> LoosePicture(const std::string& name, const std::string& modelPath,
                                         const Settings& settings, const PictureDecoder& decode) {
    if (name.empty()) return std::nullopt;
    std::vector<std::string> folders;
    const std::string modelFolder = std::filesystem::path(modelPath).parent_path().string();
    folders.push_back(modelFolder.empty() ? std::string() : modelFolder + "/");
    if (!settings.OGFPath.empty()) folders.push_back(settings.OGFPath);
    for (const std::string& folder : folders) {
        for (const char* ext : {".png", ".tga"}) {
            const auto file = FindFileIgnoringCase(folder + name + ext);
            if (!file) continue;
            if (auto picture = decode(file->string())) {
                picture->Name = file->string();
                return picture;
            }
        }
    }
    return std::nullopt;
}

}  // namespace

void LoadModelTextures(const ModelData& model, const std::string& modelPath, GameData& data,
                       const Settings& settings, const std::vector<std::uint32_t>& missing,
                       TextureUploader& uploader, LoadedTextures& out,
                       const PictureDecoder& pictures) {
    out = LoadedTextures{};
    if (model.Textures.empty()) return;
    ArchiveReader archives(data.Hog);

    const int count = static_cast<int>(model.Textures.size());
    uploader.AllocModelTextures(count);
    out.Slots.assign(model.Textures.size(), TextureSlot{});
    out.Resolved.assign(model.Textures.size(), ResolvedTexture{});
    out.Names = data.Gam.GetGAMTexInfo(model, out.Slots);
    out.ObjectKind = data.Gam.GetGAMOBJInfo(modelPath);

    clsOGF& ogf = data.Ogf;
    for (int t = 0; t < count; ++t) {
        const auto ti = static_cast<std::size_t>(t);
        TextureSlot& slot = out.Slots[ti];
        ResolvedTexture& resolved = out.Resolved[ti];
        const TexLookup found = data.Hog.GetTexIndex(out.Names[ti].FileName, settings);

        std::optional<std::vector<std::uint8_t>> bytes;
        bool animation = false;
        if (found.index == kLooseImageIndex) {
            resolved.Source = TextureSource::Loose;
            resolved.Path = found.path;
            bytes = ReadFileBytes(found.path);
            animation = ContainsIgnoringCase(found.path, ".oaf");
        } else if (found.index >= 0) {
            const HogTextureEntry& e = data.Hog.Textures[static_cast<std::size_t>(found.index)];
            resolved.Source = e.Slot == kSlotMission   ? TextureSource::Mission
                              : e.Slot == kSlotExtra13 ? TextureSource::Extra13
                                                       : TextureSource::D3;
            resolved.Path = EntryName(e.Name);
            bytes = archives.Read(e.Slot, e.Offset, e.Length);
            animation = !e.IsOGF;
        }

        if (bytes) {
            ByteReader r(*bytes);
            resolved.Status = animation ? ogf.ReadOAF(r, slot, out.Frames) : ogf.ReadOGF(r);
            resolved.Decoded = resolved.Status == OgfStatus::Ok;
        } else {
            resolved.Source = TextureSource::Missing;
        }

        if (!resolved.Decoded && pictures) {
            if (auto picture =
                    LoosePicture(out.Names[ti].FileName, modelPath, settings, pictures)) {
                resolved.Source = TextureSource::Loose;
                resolved.Path = picture->Name;
                resolved.Status = OgfStatus::Ok;
                resolved.Decoded = true;
                ogf.Image = std::move(*picture);
            }
        }
        if (!resolved.Decoded) {
            uploader.UploadModelTexture(t, kMissingTextureSize, kMissingTextureSize,
                                        missing.data());
            continue;
        }
        slot.HasAlpha = ogf.Image.HasAlpha;
        if (slot.Gam.GamFlags & kGamFlagAlpha) slot.HasAlpha = true;
        if (out.ObjectKind == 2) slot.HasAlpha = false;
        slot.Width = ogf.Image.Width;
        slot.Height = ogf.Image.Height;
        uploader.UploadModelTexture(t, slot.Width, slot.Height, ogf.Image.Pixels.data());
    }
    ogf.Image.Pixels.clear();
    ogf.Image.Pixels.shrink_to_fit();
}

}  // namespace mw
