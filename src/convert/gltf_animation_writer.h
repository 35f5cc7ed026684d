// The keys of an export as one glTF animation, "Key frames": a sub-object's position keys as
// the translation of its node (offset + key), its rotation keys as the orientation each key
// reaches, frame f at f/30 seconds.
#pragma once

#include <nlohmann/json.hpp>

#include "convert/gltf_buffer.h"
#include "convert/gltf_common.h"
#include "model/model_data.h"

namespace mw::gltf {

// The "animations" list (null when the model has no keys glTF can show); the sub-object of
// record s is node s. The samplers' data go into `buffers`.
nlohmann::json AnimationJson(const ModelData& model, BufferBuilder& buffers);

}  // namespace mw::gltf
