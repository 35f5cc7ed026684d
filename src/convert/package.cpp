#include "convert/package.h"

#include <algorithm>
#include <optional>
#include <tuple>

#include "convert/texture_images.h"
#include "gamedata/file_names.h"
#include "gamedata/gam_writer.h"
#include "gamedata/game_object.h"
#include "gamedata/hog_writer.h"
#include "gamedata/ogf.h"
#include "model/file_io.h"
#include "model/oof_reader.h"
#include "model/text_codec.h"

namespace mw {
namespace {

// NAME with the first extension found, in a folder, ignoring case.
std::optional<std::filesystem::path> FindBeside(const std::vector<std::filesystem::path>& folders,
                                                const std::string& name,
                                                std::initializer_list<const char*> extensions) {
    for (const auto& folder : folders) {
        for (const char* ext : extensions) {
            if (auto found = FindFileIgnoringCase((folder / (name + ext)).string())) return found;
        }
    }
    return std::nullopt;
}

// The size an image has, read from its OGF or OAF header (0 by 0 when it cannot be read).
std::pair<int, int> ImageSize(const std::vector<std::uint8_t>& bytes, bool animation) {
    ByteReader r(bytes);
    if (animation) r.skip(!bytes.empty() && bytes[0] == 127 ? 7 : 17);
    clsOGF ogf;
    if (ogf.ReadOGF(r) != OgfStatus::Ok) return {0, 0};
    return {ogf.Image.Width, ogf.Image.Height};
}

// The texture's image for the archive, and its page; nullopt (with a warning) when the
// picture cannot be used.
struct AddedImage {
    std::vector<std::uint8_t> Bytes;
    TexturePage Page;
};

std::optional<AddedImage> PrepareImage(const PackageTexture& t,
                                       std::vector<std::string>& warnings) {
    AddedImage added;
    added.Page.Name = t.Name;
    added.Page.ImageFile = t.Entry;
    if (t.Source == PackageSource::CopiedImage) {
        auto bytes = ReadFileBytes(t.File);
        if (!bytes) {
            warnings.push_back("Cannot read " + t.File.string() + ".");
            return std::nullopt;
        }
        added.Page.Animated = ContainsIgnoringCase(t.Entry, ".oaf");
        std::tie(added.Page.Width, added.Page.Height) = ImageSize(*bytes, added.Page.Animated);
        if (added.Page.Animated) {
            // The game plays each frame for the page's speed divided by the frame count.
            const auto timing = ReadOafTiming(*bytes);
            if (timing && timing->Frames > 0 && timing->FrameTime > 0.0f)
                added.Page.AnimationTime = timing->FrameTime * static_cast<float>(timing->Frames);
        }
        added.Bytes = std::move(*bytes);
        return added;
    }
    std::string error;
    auto image = ReadTextureImage(t.File.string(), error);
    if (!image || image->Width == 0 || image->Height == 0) {
        warnings.push_back(error.empty() ? t.File.string() + " has no pixels." : error);
        return std::nullopt;
    }
    if (!IsPowerOfTwo(image->Width) || !IsPowerOfTwo(image->Height)) {
        const RgbaImage resized = ResizeToPowerOfTwo(*image);
        warnings.push_back(t.File.filename().string() + " was " + std::to_string(image->Width) +
                           "x" + std::to_string(image->Height) + "; scaled to " +
                           std::to_string(resized.Width) + "x" + std::to_string(resized.Height) +
                           ".");
        image = resized;
    }
    if (image->Width > kLargestSafeTextureSide || image->Height > kLargestSafeTextureSide) {
        warnings.push_back(t.Entry + " has a side above " +
                           std::to_string(kLargestSafeTextureSide) +
                           " pixels; the game's renderer is known to fail on such textures.");
    }
    added.Page.Width = image->Width;
    added.Page.Height = image->Height;
    added.Bytes = EncodeOGF(*image, {OgfFormat::Auto, -1, t.Entry});
    return added;
}

}  // namespace

const char* PackageSourceName(PackageSource source) {
    switch (source) {
        case PackageSource::InGame:
            return "game data";
        case PackageSource::CopiedImage:
            return "copied";
        case PackageSource::EncodedImage:
            return "encoded";
        case PackageSource::PageOnly:
            return "page only";
        case PackageSource::Missing:
            return "missing";
    }
    return "missing";
}

std::vector<PackageTexture> PlanPackageTextures(const ModelData& model, GameData& game,
                                                const Settings& settings,
                                                const std::vector<std::filesystem::path>& folders) {
    std::vector<TextureSlot> slots(model.Textures.size());
    const std::vector<TextureNames> names = game.Gam.GetGAMTexInfo(model, slots);
    std::vector<PackageTexture> plan;
    for (std::size_t t = 0; t < model.Textures.size(); ++t) {
        PackageTexture p;
        p.Name =
            model.Textures[t].Name.empty() ? model.Textures[t].GameName : model.Textures[t].Name;
        const TexLookup found = game.Hog.GetTexIndex(names[t].FileName, settings);
        const bool inArchives = found.index >= 0 && found.index != kLooseImageIndex;
        if (inArchives && names[t].InTable) {
            p.Source = PackageSource::InGame;
        } else if (auto image = FindBeside(folders, p.Name, {".ogf", ".oaf"})) {
            p.Source = PackageSource::CopiedImage;
            p.File = *image;
            p.Entry = p.Name + (ContainsIgnoringCase(image->string(), ".oaf") ? ".oaf" : ".ogf");
        } else if (auto picture = FindBeside(folders, p.Name, {".png", ".tga"})) {
            p.Source = PackageSource::EncodedImage;
            p.File = *picture;
            p.Entry = p.Name + ".ogf";
        } else if (found.index == kLooseImageIndex) {
            // The editor's folder of loose images: the game does not have it.
            p.Source = PackageSource::CopiedImage;
            p.File = found.path;
            p.Entry = p.Name + (ContainsIgnoringCase(found.path, ".oaf") ? ".oaf" : ".ogf");
        } else if (inArchives) {
            p.Source = PackageSource::PageOnly;
            const HogTextureEntry& e = game.Hog.Textures[static_cast<std::size_t>(found.index)];
            p.Entry = EntryName(e.Name);
        }
        plan.push_back(std::move(p));
    }
    return plan;
}

std::string PackageReport(const PackageResult& result, const std::string& archive) {
    std::string text;
    for (const PackageTexture& t : result.Textures) {
        text += "texture " + Utf8From1252(t.Name) + ": " + PackageSourceName(t.Source);
        if (!t.File.empty() && t.Source != PackageSource::Missing)
            text += " (" + t.File.filename().string() + " as " + Utf8From1252(t.Entry) + ")";
        text += "\n";
    }
    if (!result.Object.empty()) text += "page " + result.Object + "\n";
    text += archive + ":";
    for (const std::string& entry : result.Entries)
        text += " " + entry;
    text += "\n";
    if (result.Missing > 0) {
        text += std::to_string(result.Missing) +
                (result.Missing == 1 ? " texture is" : " textures are") + " still missing.\n";
    }
    return text;
}

namespace {

struct PackedModel {
    std::string Entry;  // its name in the archive (Windows-1252)
    std::vector<std::uint8_t> Bytes;
    ModelData Model;
};

// Reads a model file for the package; "" or why it cannot go in.
std::string ReadPackedModel(const std::filesystem::path& path, PackedModel& packed,
                            bool& unreadable) {
    auto bytes = ReadFileBytes(path);
    if (!bytes) {
        unreadable = true;
        return "Cannot read " + path.string() + ".";
    }
    if (readOOF(packed.Model, *bytes) != ResultCode::Success)
        return path.string() + " is not a model this program reads.";
    const auto entry = HogNameFromUtf8(path.filename().string());
    if (!entry) {
        return "\"" + path.filename().string() +
               "\" has a character the game's file names (Windows-1252) cannot hold.";
    }
    packed.Entry = *entry;
    packed.Bytes = std::move(*bytes);
    return {};
}

// The object's page, copied from the last page of that name in the game's tables.
std::string ObjectPage(const PackageObject& object, const std::vector<NamedTable>* tables,
                       const std::vector<PackedModel>& models, TablePage& page,
                       std::string& described) {
    const TablePage* like = nullptr;
    const std::string likeName = Cp1252FromUtf8(object.Like);
    for (std::size_t n = 0; tables != nullptr && n < tables->size(); ++n) {
        const GamTable& t = (*tables)[n].Table;
        if (const int i = FindPage(t, likeName); i >= 0)
            like = &t.Pages[static_cast<std::size_t>(i)];
    }
    if (like == nullptr) return "No page \"" + object.Like + "\" in the game data's tables.";
    const auto name = object.Replace ? std::optional<std::string>(like->Name())
                                     : Cp1252FromUtf8Exact(object.Name);
    if (!name) return "\"" + object.Name + "\" has a character the game's texts cannot hold.";
    ObjectModels names{models[0].Entry, {}, {}};
    for (std::size_t m = 1; m < models.size(); ++m)
        (object.Medium.empty() || m == 2 ? names.Low : names.Medium) = models[m].Entry;
    if (std::string problem = CopyObjectPage(*like, *name, names, page); !problem.empty())
        return problem;
    described = PageLabel(page) +
                (object.Replace ? " replacing the game's" : " like \"" + object.Like + "\"");
    return {};
}

}  // namespace

PackageResult WritePackage(const std::filesystem::path& modelPath,
                           const std::filesystem::path& archive, GameData& game,
                           const Settings& settings,
                           const std::vector<std::filesystem::path>& textureFolders,
                           std::uint32_t time, const PackageObject* object,
                           const std::vector<NamedTable>* gameTables) {
    PackageResult result;
    std::vector<std::filesystem::path> paths{modelPath};
    if (object != nullptr) {
        for (const auto& detail : {object->Medium, object->Low}) {
            if (!detail.empty()) paths.push_back(detail);
        }
    }
    std::vector<PackedModel> models(paths.size());
    for (std::size_t m = 0; m < paths.size(); ++m) {
        result.Error = ReadPackedModel(paths[m], models[m], result.ModelUnreadable);
        if (!result.Error.empty()) return result;
    }
    const auto tableStem = HogNameFromUtf8(archive.stem().string());
    if (!tableStem) {
        result.Error = "\"" + archive.filename().string() +
                       "\" has a character the game's file names (Windows-1252) cannot hold.";
        result.Refused = true;
        return result;
    }
    std::vector<std::filesystem::path> folders = textureFolders;
    folders.push_back(modelPath.parent_path().empty() ? "." : modelPath.parent_path());
    // Every texture of the model and its detail models, once.
    for (const PackedModel& m : models) {
        for (PackageTexture& t : PlanPackageTextures(m.Model, game, settings, folders)) {
            const bool seen =
                std::any_of(result.Textures.begin(), result.Textures.end(),
                            [&t](const PackageTexture& u) { return u.Name == t.Name; });
            if (!seen) result.Textures.push_back(std::move(t));
        }
    }
    // The game loads a texture only through an image file name of at most 33 characters.
    for (const PackageTexture& t : result.Textures) {
        if (t.Source == PackageSource::InGame || t.Source == PackageSource::Missing) continue;
        if (t.Name.size() > kMaxTextureNameLength) {
            result.Error = "The texture name \"" + Utf8From1252(t.Name) + "\" is longer than the " +
                           std::to_string(kMaxTextureNameLength) +
                           " characters the game loads an image by; rename it in the model.";
            result.Refused = true;
            return result;
        }
    }
    TablePage objectPage;
    if (object != nullptr) {
        result.Error = ObjectPage(*object, gameTables, models, objectPage, result.Object);
        result.Refused = !result.Error.empty();
        if (result.Refused) return result;
    }

    std::vector<HogFile> files;
    for (PackedModel& m : models)
        files.push_back({m.Entry, std::move(m.Bytes)});
    std::vector<std::uint8_t> table;
    for (PackageTexture& t : result.Textures) {
        if (t.Source == PackageSource::InGame) continue;
        if (t.Source == PackageSource::Missing) {
            ++result.Missing;
            continue;
        }
        if (t.Source == PackageSource::PageOnly) {
            const auto page = WriteTexturePage({t.Name, t.Entry, 0, 0, false, 1.0f});
            table.insert(table.end(), page.begin(), page.end());
            continue;
        }
        auto added = PrepareImage(t, result.Warnings);
        if (!added) {
            t.Source = PackageSource::Missing;
            ++result.Missing;
            continue;
        }
        const auto page = WriteTexturePage(added->Page);
        table.insert(table.end(), page.begin(), page.end());
        files.push_back({t.Entry, std::move(added->Bytes)});
    }
    if (object != nullptr)
        table.insert(table.end(), objectPage.Bytes.begin(), objectPage.Bytes.end());
    // The game loads the table of NAME.mn3 as NAME.gam.
    if (!table.empty()) files.push_back({*tableStem + ".gam", std::move(table)});
    for (const HogFile& f : files)
        result.Entries.push_back(Utf8From1252(f.Name));
    const HogEdit written = WriteHogFiles(archive, std::move(files), time);
    if (!written.Error.empty()) {
        result.Error = written.Error;
        result.Entries.clear();
    }
    return result;
}

}  // namespace mw
