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

    // Gives each model texture its game and file names and its GAM properties.
    void GetGAMTexInfo(ModelData& model, std::vector<TextureSlot>& slots) const;

    // The kind of the object that uses the model file, or 0.
    std::uint8_t GetGAMOBJInfo(std::string_view modelPath) const;

    std::vector<GamTextureEntry> Textures;
    std::vector<GamObjectEntry> Objects;
    bool Overflow = false;
};

}  // namespace mw
