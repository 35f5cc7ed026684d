// Reads glTF through tinygltf: it parses the JSON, the binary container and the buffers
// (embedded, data URIs or files beside); pictures are not decoded, since only their names
// matter here. Accessors are decoded here, each checked against its buffer first.
#include <tiny_gltf.h>
#include <algorithm>

#include <cstring>
#include <filesystem>

#include "convert/import_scene.h"
#include "convert/scene_transform.h"
#include "model/text_codec.h"

namespace mw {
namespace {

bool SkipPictures(tinygltf::Image*, const int, std::string*, std::string*, int, int,
                  const unsigned char*, int, void*) {
    return true;
}

nlohmann::json ExtrasOf(const std::string& text) {
    if (text.empty()) return nullptr;
    return nlohmann::json::parse(text, nullptr, false);
}

double ComponentValue(const unsigned char* p, int type, bool normalized) {
    switch (type) {
        case TINYGLTF_COMPONENT_TYPE_FLOAT: {
            float f;
            std::memcpy(&f, p, 4);
            return f;
        }
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
            return normalized ? *p / 255.0 : *p;
        case TINYGLTF_COMPONENT_TYPE_BYTE: {
            const auto v = static_cast<signed char>(*p);
            return normalized ? std::max(v / 127.0, -1.0) : v;
        }
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT: {
            std::uint16_t v;
            std::memcpy(&v, p, 2);
            return normalized ? v / 65535.0 : v;
        }
        case TINYGLTF_COMPONENT_TYPE_SHORT: {
            std::int16_t v;
            std::memcpy(&v, p, 2);
            return normalized ? std::max(v / 32767.0, -1.0) : v;
        }
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT: {
            std::uint32_t v;
            std::memcpy(&v, p, 4);
            return v;
        }
        default:
            return 0.0;
    }
}

// The values of an accessor, `components` per element; false when it does not fit its
// buffer or has another shape.
template <typename T>
bool ReadAccessor(const tinygltf::Model& model, int index, int components, std::vector<T>& out) {
    if (index < 0 || index >= static_cast<int>(model.accessors.size())) return false;
    const tinygltf::Accessor& a = model.accessors[static_cast<std::size_t>(index)];
    const int size = tinygltf::GetComponentSizeInBytes(static_cast<std::uint32_t>(a.componentType));
    if (size <= 0 ||
        tinygltf::GetNumComponentsInType(static_cast<std::uint32_t>(a.type)) != components)
        return false;
    if constexpr (std::is_integral_v<T>) {
        // Corner lists are unsigned whole numbers; anything else would not convert.
        if (a.normalized || (a.componentType != TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE &&
                             a.componentType != TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT &&
                             a.componentType != TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT)) {
            return false;
        }
    }
    const std::size_t count = a.count;
    out.assign(count * static_cast<std::size_t>(components), T{});
    if (a.bufferView < 0) return true;  // all zero
    if (a.bufferView >= static_cast<int>(model.bufferViews.size())) return false;
    const tinygltf::BufferView& view = model.bufferViews[static_cast<std::size_t>(a.bufferView)];
    if (view.buffer < 0 || view.buffer >= static_cast<int>(model.buffers.size())) return false;
    const auto& data = model.buffers[static_cast<std::size_t>(view.buffer)].data;
    const std::size_t element =
        static_cast<std::size_t>(size) * static_cast<std::size_t>(components);
    const std::size_t stride = view.byteStride != 0 ? view.byteStride : element;
    const std::size_t start = view.byteOffset + a.byteOffset;
    if (count == 0) return true;
    if (view.byteOffset + view.byteLength > data.size() || a.byteOffset > view.byteLength ||
        stride < element || (count - 1) * stride + element > view.byteLength - a.byteOffset) {
        return false;
    }
    const unsigned char* base = data.data() + start;
    if (a.componentType == TINYGLTF_COMPONENT_TYPE_FLOAT && std::is_same_v<T, float> &&
        stride == element) {
        std::memcpy(out.data(), base, count * element);
        return true;
    }
    for (std::size_t i = 0; i < count; ++i) {
        for (int c = 0; c < components; ++c) {
            out[i * static_cast<std::size_t>(components) + static_cast<std::size_t>(c)] =
                static_cast<T>(
                    ComponentValue(base + i * stride + static_cast<std::size_t>(c * size),
                                   a.componentType, a.normalized));
        }
    }
    return true;
}

// Triangles of a primitive's mode as a list of corner indices.
std::vector<std::uint32_t> Triangles(int mode, const std::vector<std::uint32_t>& indices) {
    std::vector<std::uint32_t> out;
    if (mode == TINYGLTF_MODE_TRIANGLES) {
        out.assign(indices.begin(), indices.end() - static_cast<long>(indices.size() % 3));
    } else if (mode == TINYGLTF_MODE_TRIANGLE_STRIP) {
        for (std::size_t i = 2; i < indices.size(); ++i) {
            if (i % 2 == 0) {
                out.insert(out.end(), {indices[i - 2], indices[i - 1], indices[i]});
            } else {
                out.insert(out.end(), {indices[i - 1], indices[i - 2], indices[i]});
            }
        }
    } else if (mode == TINYGLTF_MODE_TRIANGLE_FAN) {
        for (std::size_t i = 2; i < indices.size(); ++i)
            out.insert(out.end(), {indices[0], indices[i - 1], indices[i]});
    }
    return out;
}

bool ReadPrimitive(const tinygltf::Model& model, const tinygltf::Primitive& p, ScenePrimitive& out,
                   std::string& error) {
    const auto attribute = [&](const char* name) {
        const auto found = p.attributes.find(name);
        return found == p.attributes.end() ? -1 : found->second;
    };
    out.Material = p.material;
    if (!ReadAccessor(model, attribute("POSITION"), 3, out.Positions)) {
        error = "A mesh's vertex positions do not fit the file's buffers.";
        return false;
    }
    if (attribute("NORMAL") >= 0 && !ReadAccessor(model, attribute("NORMAL"), 3, out.Normals))
        out.Normals.clear();
    if (attribute("TEXCOORD_0") >= 0 && !ReadAccessor(model, attribute("TEXCOORD_0"), 2, out.Uvs)) {
        out.Uvs.clear();
    }
    if (const int colours = attribute("COLOR_0"); colours >= 0) {
        std::vector<float> rgba;
        if (ReadAccessor(model, colours, 4, rgba)) {
            for (std::size_t i = 0; i + 3 < rgba.size(); i += 4)
                out.Colours.insert(out.Colours.end(), {rgba[i], rgba[i + 1], rgba[i + 2]});
        } else if (!ReadAccessor(model, colours, 3, out.Colours)) {
            out.Colours.clear();
        }
    }
    std::vector<std::uint32_t> indices;
    if (p.indices >= 0) {
        if (!ReadAccessor(model, p.indices, 1, indices)) {
            error =
                "A mesh's corner list is damaged (not whole numbers, or past the end of its "
                "buffer).";
            return false;
        }
    } else {
        indices.resize(out.VertexCount());
        for (std::size_t i = 0; i < indices.size(); ++i)
            indices[i] = static_cast<std::uint32_t>(i);
    }
    out.Indices = Triangles(p.mode, indices);
    for (const std::uint32_t i : out.Indices) {
        if (i >= out.VertexCount()) {
            error = "A mesh names a vertex it does not have.";
            return false;
        }
    }
    return true;
}

// Copies the buffer views a node's "descent3" extras keep records in.
void KeepBlocks(const tinygltf::Model& model, const nlohmann::json& extras,
                std::map<int, std::vector<std::uint8_t>>& blocks) {
    if (!extras.is_object() || !extras.contains(gltf::kExtrasKey)) return;
    const nlohmann::json& e = extras[gltf::kExtrasKey];
    if (!e.is_object()) return;
    for (const auto& [key, value] : e.items()) {
        const int index = gltf::IntFrom(gltf::Member(value, "buffer_view"), -1);
        if (index < 0 || index >= static_cast<int>(model.bufferViews.size()) ||
            blocks.contains(index))
            continue;
        const tinygltf::BufferView& view = model.bufferViews[static_cast<std::size_t>(index)];
        if (view.buffer < 0 || view.buffer >= static_cast<int>(model.buffers.size())) continue;
        const auto& data = model.buffers[static_cast<std::size_t>(view.buffer)].data;
        if (view.byteOffset > data.size() || view.byteLength > data.size() - view.byteOffset)
            continue;
        const auto first = data.begin() + static_cast<long>(view.byteOffset);
        blocks.emplace(
            index, std::vector<std::uint8_t>(first, first + static_cast<long>(view.byteLength)));
    }
}

std::string PictureName(const tinygltf::Model& model, int texture) {
    if (texture < 0 || texture >= static_cast<int>(model.textures.size())) return {};
    const int source = model.textures[static_cast<std::size_t>(texture)].source;
    if (source < 0 || source >= static_cast<int>(model.images.size())) return {};
    const tinygltf::Image& image = model.images[static_cast<std::size_t>(source)];
    if (!image.uri.empty() && !image.uri.starts_with("data:"))
        return std::filesystem::path(image.uri).stem().string();
    return image.name;
}

}  // namespace

namespace {

// What tinygltf has read, as a scene.
bool SceneOf(const tinygltf::Model& model, ImportScene& scene, std::string& error);

bool Finish(bool read, const tinygltf::Model& model, ImportScene& scene, std::string& error) {
    if (!read) {
        if (error.empty()) error = "The file could not be read as glTF.";
        while (!error.empty() && error.back() == '\n')
            error.pop_back();
        return false;
    }
    return SceneOf(model, scene, error);
}

tinygltf::TinyGLTF Loader() {
    tinygltf::TinyGLTF loader;
    loader.SetImageLoader(SkipPictures, nullptr);
    loader.SetStoreOriginalJSONForExtrasAndExtensions(true);
    return loader;
}

// File access refused: bytes given alone have nothing beside them.
bool NoFile(const std::string&, void*) {
    return false;
}
std::string SamePath(const std::string& path, void*) {
    return path;
}
bool NoRead(std::vector<unsigned char>*, std::string* error, const std::string& path, void*) {
    if (error != nullptr) *error = "No file beside the bytes: " + path;
    return false;
}
bool NoWrite(std::string* error, const std::string&, const std::vector<unsigned char>&, void*) {
    if (error != nullptr) *error = "Nothing is written.";
    return false;
}

}  // namespace

bool ReadGltfScene(const std::string& path, ImportScene& scene, std::string& error) {
    tinygltf::TinyGLTF loader = Loader();
    tinygltf::Model model;
    std::string warning;
    const bool binary = LowerCase1252(std::filesystem::path(path).extension().string()) == ".glb";
    const bool read = binary ? loader.LoadBinaryFromFile(&model, &error, &warning, path)
                             : loader.LoadASCIIFromFile(&model, &error, &warning, path);
    return Finish(read, model, scene, error);
}

bool ReadGltfSceneFromBytes(std::span<const std::uint8_t> bytes, ImportScene& scene,
                            std::string& error) {
    tinygltf::TinyGLTF loader = Loader();
    loader.SetFsCallbacks({NoFile, SamePath, NoRead, NoWrite, nullptr});
    tinygltf::Model model;
    std::string warning;
    const auto size = static_cast<unsigned int>(bytes.size());
    const bool binary = bytes.size() >= 4 && std::memcmp(bytes.data(), "glTF", 4) == 0;
    const bool read =
        binary ? loader.LoadBinaryFromMemory(&model, &error, &warning, bytes.data(), size, "")
               : loader.LoadASCIIFromString(&model, &error, &warning,
                                            reinterpret_cast<const char*>(bytes.data()), size, "");
    return Finish(read, model, scene, error);
}

namespace {

// Every animation's channels as one timeline (Blender writes an animation per object); a
// node's property animated twice is taken from the first. Channels that cannot be read are
// left out.
void ReadAnimations(const tinygltf::Model& model, const std::vector<int>& sceneIndex,
                    ImportScene& scene) {
    for (const tinygltf::Mesh& m : model.meshes) {
        for (const tinygltf::Primitive& p : m.primitives)
            scene.MorphTargets = scene.MorphTargets || !p.targets.empty();
    }
    for (const tinygltf::Animation& a : model.animations) {
        for (const tinygltf::AnimationChannel& c : a.channels) {
            if (c.target_node < 0 || c.target_node >= static_cast<int>(sceneIndex.size()) ||
                sceneIndex[static_cast<std::size_t>(c.target_node)] < 0 || c.sampler < 0 ||
                c.sampler >= static_cast<int>(a.samplers.size())) {
                continue;
            }
            if (c.target_path == "scale") scene.ScaleAnimated = true;
            if (c.target_path == "weights") scene.MorphTargets = true;
            if (c.target_path != "translation" && c.target_path != "rotation") continue;
            SceneChannel channel;
            channel.Node = sceneIndex[static_cast<std::size_t>(c.target_node)];
            channel.Target = c.target_path == "rotation" ? SceneChannel::Path::Rotation
                                                         : SceneChannel::Path::Translation;
            const bool taken = std::any_of(
                scene.Channels.begin(), scene.Channels.end(), [&](const SceneChannel& other) {
                    return other.Node == channel.Node && other.Target == channel.Target;
                });
            if (taken) continue;
            const tinygltf::AnimationSampler& sampler =
                a.samplers[static_cast<std::size_t>(c.sampler)];
            channel.Mode = sampler.interpolation == "STEP" ? SceneChannel::Interpolation::Step
                           : sampler.interpolation == "CUBICSPLINE"
                               ? SceneChannel::Interpolation::CubicSpline
                               : SceneChannel::Interpolation::Linear;
            const int components = static_cast<int>(channel.Components());
            const std::size_t perKey =
                channel.Mode == SceneChannel::Interpolation::CubicSpline ? 3 : 1;
            if (!ReadAccessor(model, sampler.input, 1, channel.Times) ||
                !ReadAccessor(model, sampler.output, components, channel.Values) ||
                channel.Times.empty() ||
                channel.Values.size() != channel.Times.size() * perKey * channel.Components()) {
                continue;
            }
            scene.Channels.push_back(std::move(channel));
        }
    }
}

bool SceneOf(const tinygltf::Model& model, ImportScene& scene, std::string& error) {
    for (const tinygltf::Material& m : model.materials) {
        SceneMaterial material;
        material.Name = m.name;
        const nlohmann::json extras = ExtrasOf(m.extras_json_string);
        material.Untextured = gltf::BoolFrom(gltf::Member(extras, "d3_untextured"));
        if (extras.is_object() && extras.contains("d3_texture") &&
            extras["d3_texture"].is_string()) {
            material.Texture = extras["d3_texture"].get<std::string>();
        } else {
            material.Texture = PictureName(model, m.pbrMetallicRoughness.baseColorTexture.index);
        }
        const auto& factor = m.pbrMetallicRoughness.baseColorFactor;
        for (std::size_t c = 0; c < 4 && c < factor.size(); ++c)
            material.Colour[c] = static_cast<float>(factor[c]);
        scene.Materials.push_back(std::move(material));
    }
    for (const tinygltf::Mesh& m : model.meshes) {
        SceneMesh mesh;
        for (const tinygltf::Primitive& p : m.primitives) {
            ScenePrimitive primitive;
            if (!ReadPrimitive(model, p, primitive, error)) return false;
            if (primitive.Material >= static_cast<int>(scene.Materials.size()))
                primitive.Material = -1;
            mesh.Primitives.push_back(std::move(primitive));
        }
        scene.Meshes.push_back(std::move(mesh));
    }
    // The nodes of the scene shown, parents first; a node reached twice is taken once.
    const int sceneIndex = model.defaultScene >= 0 ? model.defaultScene : 0;
    std::vector<int> roots;
    if (sceneIndex < static_cast<int>(model.scenes.size())) {
        const tinygltf::Scene& s = model.scenes[static_cast<std::size_t>(sceneIndex)];
        roots = s.nodes;
    } else {
        for (std::size_t n = 0; n < model.nodes.size(); ++n)
            roots.push_back(static_cast<int>(n));
    }
    std::vector<int> indexInScene(model.nodes.size(), -1);
    std::vector<std::pair<int, int>> stack;  // node, parent in the scene
    for (auto r = roots.rbegin(); r != roots.rend(); ++r)
        stack.emplace_back(*r, -1);
    while (!stack.empty()) {
        const auto [index, parent] = stack.back();
        stack.pop_back();
        if (index < 0 || index >= static_cast<int>(model.nodes.size()) ||
            indexInScene[static_cast<std::size_t>(index)] >= 0) {
            continue;
        }
        const tinygltf::Node& n = model.nodes[static_cast<std::size_t>(index)];
        SceneNode node;
        node.Name = n.name;
        node.Parent = parent;
        if (n.mesh >= 0 && n.mesh < static_cast<int>(scene.Meshes.size()))
            node.Meshes.push_back(n.mesh);
        if (n.matrix.size() == 16) {
            for (std::size_t i = 0; i < 16; ++i)
                node.Local[i] = n.matrix[i];
        } else {
            Vector3 t;
            if (n.translation.size() == 3) {
                t = {static_cast<float>(n.translation[0]), static_cast<float>(n.translation[1]),
                     static_cast<float>(n.translation[2])};
            }
            gltf::Quaternion q{0.0, 0.0, 0.0, 1.0};
            if (n.rotation.size() == 4)
                q = {n.rotation[0], n.rotation[1], n.rotation[2], n.rotation[3]};
            std::array<double, 3> s{1.0, 1.0, 1.0};
            if (n.scale.size() == 3) s = {n.scale[0], n.scale[1], n.scale[2]};
            node.Translation = t;
            node.Rotation = q;
            node.Local = ComposeTransform(t, q, s);
        }
        node.Extras = ExtrasOf(n.extras_json_string);
        KeepBlocks(model, node.Extras, scene.Blocks);
        scene.Nodes.push_back(std::move(node));
        const int self = static_cast<int>(scene.Nodes.size()) - 1;
        indexInScene[static_cast<std::size_t>(index)] = self;
        for (auto c = n.children.rbegin(); c != n.children.rend(); ++c)
            stack.emplace_back(*c, self);
    }
    ReadAnimations(model, indexInScene, scene);
    return true;
}

}  // namespace

}  // namespace mw
