// Writes a model as glTF 2.0: one node per sub-object with a mesh of its faces, its points
// as child nodes, its key frames as one animation, and everything glTF has no place for in
// the "descent3" extras, so that importing the file gives the model back.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "gamedata/ogf_writer.h"
#include "model/model_data.h"

namespace mw {

// The decoded picture of each model texture, where the game data had one.
using TexturePictures = std::vector<std::optional<RgbaImage>>;

// The bytes of a .glb file, made in one piece of memory.
class GlbFile {
  public:
    GlbFile(std::unique_ptr<std::uint8_t[]> storage, std::size_t first, std::size_t size)
        : storage_(std::move(storage)), first_(first), size_(size) {}
    std::span<const std::uint8_t> bytes() const { return {storage_.get() + first_, size_}; }

  private:
    std::unique_ptr<std::uint8_t[]> storage_;
    std::size_t first_, size_;
};

// The model as one binary glTF file (.glb), pictures embedded.
GlbFile ExportGLB(const ModelData& model, const TexturePictures& pictures);

// Writes `out`: a .glb, or a .gltf with its buffer (.bin) and the pictures (.png) beside
// it. Returns the failure message, empty on success.
std::string ExportGLTF(const ModelData& model, const TexturePictures& pictures,
                       const std::filesystem::path& out);

}  // namespace mw
