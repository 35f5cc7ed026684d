// The game's GAM tables: texture pages (game name, image file, properties) and generic
// object pages (object name, model files, kind), read from the archives and a loose file.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "gamedata/hog.h"
#include "gamedata/progress.h"
#include "gamedata/settings.h"
#include "gamedata/texture_slot.h"
#include "model/model_data.h"

namespace mw {

inline constexpr int kMaxGamEntries = 5001;
inline constexpr std::uint8_t kGamSourceLoose = 4;

struct GamTextureEntry {
    std::string TexName;
    std::string FileName;  // the image file without its extension, lower case
    std::uint64_t PropertyPos = 0;
    std::uint8_t Source = 0;  // archive slot 1..3, or 4 for the loose file
    GamTextureProperties Properties;
};

// What the tables make of one model texture: the name the game knows it by and the image
// file it loads from (without extension). A texture no table knows keeps its own names.
struct TextureNames {
    std::string GameName;
    std::string FileName;
    bool InTable = false;  // a texture page of the tables names it
};

// The model's texture records with the resolved names in place of their own (for a room's
// texture list, which names textures by their game names).
void ApplyTextureNames(ModelData& model, const std::vector<TextureNames>& names);

struct GamObjectEntry {
    std::string ObjName;
    std::string Model1, Model2, Model3;  // lower case
    std::uint8_t Kind = 0;
};

class clsGAM {
  public:
    // Rebuilds both lists from the loaded archives' tables and the loose table named by
    // MN3GAMPath (which is emptied when that file is missing).
    void ReadGAMs(const clsHOG& hog, Settings& settings, ProgressSink* progress,
                  MessageSink* messages);

    // Reads one table's pages; `base` is the table's position in its file.
    void ReadGamTable(std::span<const std::uint8_t> table, std::uint64_t base, std::uint8_t source,
                      ProgressSink* progress);

    // Each model texture's game name and image file name as the tables resolve them, and
    // its GAM properties into `slots`. The model is not changed.
    std::vector<TextureNames> GetGAMTexInfo(const ModelData& model,
                                            std::vector<TextureSlot>& slots) const;

    // The kind of the object that uses the model file, or 0.
    std::uint8_t GetGAMOBJInfo(std::string_view modelPath) const;

    std::vector<GamTextureEntry> Textures;
    std::vector<GamObjectEntry> Objects;
    bool Overflow = false;
};

}  // namespace mw
