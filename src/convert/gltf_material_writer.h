// The materials of an export: one per model texture (named after it, "d3_texture" extra,
// its picture as PNG where one was decoded: in the buffer of a .glb, beside a .gltf), and
// for untextured faces one per colour ("colour_rrggbb"), or one "untextured" material with
// vertex colours when the model has too many colours for that.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "convert/gltf_buffer.h"
#include "convert/gltf_export.h"

namespace mw {

class MaterialWriter {
  public:
    using Files = std::vector<std::pair<std::string, std::vector<std::uint8_t>>>;
    // Materials go into `doc`; pictures into `buffers` (embedded) or `files` (beside).
    MaterialWriter(const ModelData& model, const TexturePictures& pictures, bool embed,
                   nlohmann::json& doc, gltf::BufferBuilder& buffers, Files& files)
        : m_(model),
          pictures_(pictures),
          embed_(embed),
          doc_(doc),
          buffers_(buffers),
          pictures_out_(files) {}

    // The texture materials, and whether untextured faces take vertex colours.
    void Write();
    // The material of a face (a colour's made when first needed).
    int MaterialOf(const Face& face);
    // The one material whose faces carry vertex colours, or -1.
    int VertexColoured() const { return untextured_; }

  private:
    int Picture(int t);
    void UntexturedColours();
    int UntexturedMaterial();
    int ColourMaterial(const std::array<std::uint8_t, 4>& colour);

    const ModelData& m_;
    const TexturePictures& pictures_;
    bool embed_;
    nlohmann::json& doc_;
    gltf::BufferBuilder& buffers_;
    Files& pictures_out_;
    std::map<std::uint32_t, int> colours_;
    bool vertexColours_ = false;
    int untextured_ = -1;
};

}  // namespace mw
