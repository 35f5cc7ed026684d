// The "descent3" extras of an export: every field of the model and its sub-objects that glTF
// has no place for, as objects, texts, numbers and flat number lists (what Blender keeps), and
// the records themselves (vertices, faces, corners) in buffer views of their own with a check
// to know them again.
#pragma once

#include <span>
#include <vector>

#include <nlohmann/json.hpp>

#include "convert/gltf_buffer.h"
#include "convert/gltf_common.h"
#include "model/model_data.h"

namespace mw {

class ExtrasWriter {
  public:
    ExtrasWriter(const ModelData& model, gltf::BufferBuilder& buffers)
        : m_(model), buffers_(buffers) {}

    // A sub-object's fields, keys and records.
    nlohmann::json SubObjectExtras(const SubObject& sub);
    // The model's own fields, kept on the first sub-object's node.
    nlohmann::json ModelExtras() const;

  private:
    nlohmann::json FaceBlock(const std::vector<Face>& faces);
    // Records kept whole in a buffer view of their own, with a check to know them again.
    template <typename T>
    nlohmann::json Block(const std::vector<T>& values) {
        if (values.empty()) return {{"empty", true}};  // glTF has no empty buffer views
        const auto bytes = std::as_bytes(std::span(values));
        const std::span<const std::uint8_t> raw{reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                                bytes.size()};
        return {{"buffer_view", buffers_.View(raw, std::nullopt)},
                {"check", gltf::BlockCheck(raw)}};
    }

    const ModelData& m_;
    gltf::BufferBuilder& buffers_;
};

}  // namespace mw
