// Packaging a model for the game: the model, every texture it uses that the game data does
// not have, and a table with a texture page for each added texture (the game shows a
// model's texture only when a table page names it), in one HOG2 or mission archive.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "gamedata/table_check.h"
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

// A game object for the model: a page copied from an existing one of the game data with the
// model's names (as a mission adds a robot or powerup), or, with `Replace`, keeping that
// page's name so the mission's page replaces the game's (as a mission flies a new ship).
struct PackageObject {
    std::string Name;  // the new page's name (UTF-8); ignored with Replace
    std::string Like;  // the existing page (UTF-8)
    bool Replace = false;
    std::filesystem::path Medium, Low;  // detail model files, packed too
};

struct PackageResult {
    std::string Error;             // when not empty, nothing was written
    bool ModelUnreadable = false;  // the failure was the model file
    bool Refused = false;          // the package would not work in the game: nothing written
    std::vector<PackageTexture> Textures;
    std::vector<std::string> Entries;   // the archive's files
    std::vector<std::string> Warnings;  // pictures resized, large sides, long names
    int Missing = 0;
    std::string Object;  // the object page written, for people ("generic \"X\" like \"Y\"")
};

// What went in and what is still missing, a line each, for people.
std::string PackageReport(const PackageResult& result, const std::string& archive);

// Writes the package of the model file at `modelPath` into `archive`.
// With `object`, the table holds the object's page too; `gameTables` are the game data's
// tables in which its `Like` page is found (the last one wins, as in the game).
PackageResult WritePackage(const std::filesystem::path& modelPath,
                           const std::filesystem::path& archive, GameData& game,
                           const Settings& settings,
                           const std::vector<std::filesystem::path>& textureFolders,
                           std::uint32_t time, const PackageObject* object = nullptr,
                           const std::vector<NamedTable>* gameTables = nullptr);

}  // namespace mw
