// Writes a model as glTF 2.0: one node per sub-object with a mesh of its faces, its points
// as child nodes, its key frames as one animation, and everything glTF has no place for in
// the "descent3" extras, so that importing the file gives the model back.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "gamedata/ogf_writer.h"
#include "model/model_data.h"

namespace mw {

// The decoded picture of each model texture, where the game data had one.
using TexturePictures = std::vector<std::optional<RgbaImage>>;

// The model as one binary glTF file (.glb), pictures embedded.
std::vector<std::uint8_t> ExportGLB(const ModelData& model, const TexturePictures& pictures);

// Writes `out`: a .glb, or a .gltf with its buffer (.bin) and the pictures (.png) beside
// it. Returns the failure message, empty on success.
std::string ExportGLTF(const ModelData& model, const TexturePictures& pictures,
                       const std::filesystem::path& out);

}  // namespace mw
