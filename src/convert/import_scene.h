// A 3-D file as the model importer sees it, whichever library read it: nodes with their
// transforms, meshes of polygons, materials, and the extras of the glTF ones. Everything is
// in the file's right-handed space, Y up.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "convert/gltf_common.h"

namespace mw {

struct ScenePrimitive {
    int Material = -1;
    std::vector<float> Positions;          // x, y, z per vertex
    std::vector<float> Normals;            // empty when the file has none
    std::vector<float> Uvs;                // u, v per vertex; empty when the file has none
    std::vector<float> Colours;            // linear r, g, b per vertex; empty when none
    std::vector<std::uint32_t> Indices;    // the polygons' corners, one after another
    std::vector<std::uint32_t> FaceSizes;  // corners per polygon; empty: all triangles

    std::size_t VertexCount() const { return Positions.size() / 3; }
};

struct SceneMesh {
    std::vector<ScenePrimitive> Primitives;
};

struct SceneMaterial {
    std::string Name;
    std::string Texture;  // the texture it names ("d3_texture", else its picture's name)
    std::array<float, 4> Colour{1.0f, 1.0f, 1.0f, 1.0f};  // linear
    bool Untextured = false;  // the colour of untextured faces ("d3_untextured")
    bool Default = false;     // made up by the reader for faces without a material
};

struct SceneNode {
    std::string Name;
    int Parent = -1;
    std::vector<int> Meshes;
    std::array<double, 16> Local{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};  // columns
    // The transform as the file gives it, when it gives translation and rotation.
    std::optional<Vector3> Translation;
    std::optional<gltf::Quaternion> Rotation;
    nlohmann::json Extras;  // null when none
};

// One animated property of a node: its key times (seconds) and values, as the file's sampler
// has them (for CUBICSPLINE three values per key: in-tangent, value, out-tangent).
struct SceneChannel {
    enum class Path { Translation, Rotation };
    enum class Interpolation { Linear, Step, CubicSpline };
    int Node = -1;
    Path Target = Path::Rotation;
    Interpolation Mode = Interpolation::Linear;
    std::vector<float> Times;
    std::vector<float> Values;  // x, y, z (translation) or x, y, z, w (rotation) per value

    std::size_t Components() const { return Target == Path::Rotation ? 4 : 3; }
};

struct ImportScene {
    std::vector<SceneNode> Nodes;  // parents before children
    std::vector<SceneChannel> Channels;
    // What the reader applied above the root nodes (a container it left out, the file's
    // unit), columns: their animation moves in that space.
    std::array<double, 16> RootTransform{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    // Empties point along local +Z with local +Y up, as Blender shows them and its FBX keeps
    // them; otherwise along local +Y with local -Z up, as glTF (and Blender's glTF) has them.
    bool ArrowsAlongZ = false;
    // What the file animates that a model cannot keep.
    bool ScaleAnimated = false;
    bool MorphTargets = false;
    std::vector<SceneMesh> Meshes;
    std::vector<SceneMaterial> Materials;
    // The bytes of the buffer views the nodes' "descent3" extras name, by index.
    std::map<int, std::vector<std::uint8_t>> Blocks;
};

// Reads a .gltf or .glb file; false with `error` set when the file cannot be read.
bool ReadGltfScene(const std::string& path, ImportScene& scene, std::string& error);

// The same for the bytes of a .glb or .gltf given alone (nothing beside them is read).
bool ReadGltfSceneFromBytes(std::span<const std::uint8_t> bytes, ImportScene& scene,
                            std::string& error);

// Reads any other format the Open Asset Import Library knows.
bool ReadAssimpScene(const std::string& path, ImportScene& scene, std::string& error);

}  // namespace mw
