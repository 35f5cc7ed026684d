// Packaging a model for the game: the model, every texture it uses that the game data does
// not have, and a table with a texture page for each added texture (the game shows a
// model's texture only when a table page names it), in one HOG2 or mission archive.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "gamedata/texture_loader.h"

namespace mw {

enum class PackageSource {
    InGame,        // the game data has the image and a page for it
    CopiedImage,   // an .ogf/.oaf beside the model (or in the textures folder), copied
    EncodedImage,  // a PNG/TGA picture there, encoded
    PageOnly,      // the game data has the image but no page names it: a page is added
    Missing,
};
const char* PackageSourceName(PackageSource source);

struct PackageTexture {
    std::string Name;  // the model's texture name (the page name)
    PackageSource Source = PackageSource::Missing;
    std::filesystem::path File;  // the image found beside the model
    std::string Entry;           // the image file the page names ("ship_hull.ogf")
};

// Where each texture of the model would come from. `folders` are searched in order for
// NAME.ogf, NAME.oaf, then NAME.png, NAME.tga (names ignoring case).
std::vector<PackageTexture> PlanPackageTextures(const ModelData& model, GameData& game,
                                                const Settings& settings,
                                                const std::vector<std::filesystem::path>& folders);

struct PackageResult {
    std::string Error;             // when not empty, nothing was written
    bool ModelUnreadable = false;  // the failure was the model file
    std::vector<PackageTexture> Textures;
    std::vector<std::string> Entries;   // the archive's files
    std::vector<std::string> Warnings;  // pictures resized, large sides, long names
    int Missing = 0;
};

// What went in and what is still missing, a line each, for people.
std::string PackageReport(const PackageResult& result, const std::string& archive);

// Writes the package of the model file at `modelPath` into `archive`.
PackageResult WritePackage(const std::filesystem::path& modelPath,
                           const std::filesystem::path& archive, GameData& game,
                           const Settings& settings,
                           const std::vector<std::filesystem::path>& textureFolders,
                           std::uint32_t time);

}  // namespace mw
