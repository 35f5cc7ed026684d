// Reads OBJ, FBX, Collada, 3DS, PLY, STL, LWO and the other formats of the Open Asset
// Import Library. Polygons are kept (no triangulation); lines and points are dropped.
#include <assimp/material.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <assimp/Importer.hpp>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "convert/import_scene.h"
#include "convert/scene_transform.h"

namespace mw {
namespace {

constexpr Transform kIdentity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

SceneMaterial MaterialOf(const aiMaterial& m) {
    SceneMaterial out;
    aiString name;
    if (m.Get(AI_MATKEY_NAME, name) == AI_SUCCESS) out.Name = name.C_Str();
    out.Default = out.Name == AI_DEFAULT_MATERIAL_NAME;
    aiString file;
    if (m.GetTexture(aiTextureType_BASE_COLOR, 0, &file) == AI_SUCCESS ||
        m.GetTexture(aiTextureType_DIFFUSE, 0, &file) == AI_SUCCESS) {
        std::string text = file.C_Str();
        for (char& c : text) {
            if (c == '\\') c = '/';
        }
        out.Texture = std::filesystem::path(text).stem().string();
    }
    aiColor4D colour;
    if (m.Get(AI_MATKEY_BASE_COLOR, colour) == AI_SUCCESS ||
        m.Get(AI_MATKEY_COLOR_DIFFUSE, colour) == AI_SUCCESS) {
        out.Colour = {colour.r, colour.g, colour.b, colour.a};
    }
    return out;
}

ScenePrimitive PrimitiveOf(const aiMesh& mesh) {
    ScenePrimitive p;
    p.Material = static_cast<int>(mesh.mMaterialIndex);
    p.Positions.reserve(3 * mesh.mNumVertices);
    for (unsigned v = 0; v < mesh.mNumVertices; ++v) {
        const aiVector3D& x = mesh.mVertices[v];
        p.Positions.insert(p.Positions.end(), {x.x, x.y, x.z});
        if (mesh.mNormals != nullptr) {
            const aiVector3D& n = mesh.mNormals[v];
            p.Normals.insert(p.Normals.end(), {n.x, n.y, n.z});
        }
        if (mesh.mColors[0] != nullptr) {
            const aiColor4D& k = mesh.mColors[0][v];
            p.Colours.insert(p.Colours.end(), {k.r, k.g, k.b});
        }
        if (mesh.mTextureCoords[0] != nullptr) {
            const aiVector3D& t = mesh.mTextureCoords[0][v];
            p.Uvs.insert(p.Uvs.end(), {t.x, t.y});
        }
    }
    for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
        const aiFace& face = mesh.mFaces[f];
        if (face.mNumIndices < 3) continue;
        bool valid = true;
        for (unsigned i = 0; i < face.mNumIndices; ++i)
            valid = valid && face.mIndices[i] < mesh.mNumVertices;
        if (!valid) continue;
        p.Indices.insert(p.Indices.end(), face.mIndices, face.mIndices + face.mNumIndices);
        p.FaceSizes.push_back(face.mNumIndices);
    }
    return p;
}

Transform LocalOf(const aiNode& n) {
    const aiMatrix4x4& m = n.mTransformation;  // rows
    const ai_real rows[4][4] = {{m.a1, m.a2, m.a3, m.a4},
                                {m.b1, m.b2, m.b3, m.b4},
                                {m.c1, m.c2, m.c3, m.c4},
                                {m.d1, m.d2, m.d3, m.d4}};
    Transform t{};
    for (std::size_t c = 0; c < 4; ++c) {
        for (std::size_t r = 0; r < 4; ++r)
            t[4 * c + r] = rows[r][c];
    }
    return t;
}

// The custom properties a tool wrote as the node's user properties ("pof_properties", and
// "descent3" when it holds JSON), as the extras of a glTF node would hold them.
nlohmann::json ExtrasOf(const aiNode& n) {
    nlohmann::json extras;
    if (n.mMetaData == nullptr) return extras;
    aiString text;
    if (n.mMetaData->Get("pof_properties", text)) extras["pof_properties"] = text.C_Str();
    if (n.mMetaData->Get("descent3", text)) {
        nlohmann::json kept = nlohmann::json::parse(text.C_Str(), nullptr, false);
        if (kept.is_object()) extras["descent3"] = std::move(kept);
    }
    return extras;
}

// `above`: the transform of a container node left out, applied to its children.
void AddNode(const aiNode& n, int parent, const Transform& above, ImportScene& scene,
             std::vector<int>& meshOf) {
    SceneNode node;
    node.Name = n.mName.C_Str();
    node.Parent = parent;
    node.Local = Multiply(above, LocalOf(n));
    node.Extras = ExtrasOf(n);
    // The rest pose the animation starts from, when the transform has one.
    aiVector3D scaling, position;
    aiQuaternion rotation;
    n.mTransformation.Decompose(scaling, rotation, position);
    node.Translation = Vector3{position.x, position.y, position.z};
    node.Rotation = gltf::Quaternion{rotation.x, rotation.y, rotation.z, rotation.w};
    for (unsigned i = 0; i < n.mNumMeshes; ++i) {
        const int mesh = meshOf[n.mMeshes[i]];
        if (mesh >= 0) node.Meshes.push_back(mesh);
    }
    scene.Nodes.push_back(std::move(node));
    const int self = static_cast<int>(scene.Nodes.size()) - 1;
    for (unsigned c = 0; c < n.mNumChildren; ++c)
        AddNode(*n.mChildren[c], self, kIdentity, scene, meshOf);
}

// FBX keeps the size of its unit in centimetres: 1 for centimetres, 100 for metres. One model
// unit is one metre, as one Blender unit is.
double UnitScale(const aiScene& s) {
    if (s.mMetaData == nullptr) return 1.0;
    double d = 0;
    float f = 0;
    if (s.mMetaData->Get("UnitScaleFactor", d) ||
        (s.mMetaData->Get("UnitScaleFactor", f) && (d = f, true))) {
        if (std::isfinite(d) && d > 0) return d / 100.0;
    }
    return 1.0;
}

// How surely an animation is a node's own: Blender writes a take for every object with every
// action ("turret|radarAction" moves the turret as the radar moves); its own is the one whose
// action is named after it ("turret|turretAction"). 2 own, 1 the node's take, 0 anything else.
int Ownership(const std::string& animation, const std::string& node) {
    if (animation.rfind(node + "|", 0) != 0) return 0;
    return animation.compare(node.size() + 1, node.size(), node) == 0 ? 2 : 1;
}

// One property's keys (times in ticks) as a channel, the values as `values` lists them.
template <typename Key, typename Values>
SceneChannel ChannelOf(int node, SceneChannel::Path path, const Key* keys, unsigned count,
                       double ticksPerSecond, Values values) {
    SceneChannel out;
    out.Node = node;
    out.Target = path;
    for (unsigned k = 0; k < count; ++k) {
        out.Times.push_back(static_cast<float>(keys[k].mTime / ticksPerSecond));
        for (const float v : values(keys[k].mValue))
            out.Values.push_back(v);
    }
    return out;
}

// The animations' node channels, by node name, on one timeline: for each node and property
// the channel of the animation most surely its own.
void ReadAnimations(const aiScene& s, ImportScene& scene) {
    std::vector<int> ownership;  // of each channel kept
    for (unsigned a = 0; a < s.mNumAnimations; ++a) {
        const aiAnimation& anim = *s.mAnimations[a];
        const double ticks = anim.mTicksPerSecond > 0 ? anim.mTicksPerSecond : 25.0;
        for (unsigned c = 0; c < anim.mNumChannels; ++c) {
            const aiNodeAnim& ch = *anim.mChannels[c];
            int node = -1;
            for (std::size_t n = 0; n < scene.Nodes.size() && node < 0; ++n) {
                if (scene.Nodes[n].Name == ch.mNodeName.C_Str()) node = static_cast<int>(n);
            }
            if (node < 0) continue;
            const int own = Ownership(anim.mName.C_Str(), ch.mNodeName.C_Str());
            // Keeps `out` unless a channel more surely the node's own is kept already.
            const auto keep = [&](SceneChannel out) {
                for (std::size_t i = 0; i < scene.Channels.size(); ++i) {
                    if (scene.Channels[i].Node != node || scene.Channels[i].Target != out.Target)
                        continue;
                    if (own > ownership[i]) {
                        scene.Channels[i] = std::move(out);
                        ownership[i] = own;
                    }
                    return;
                }
                scene.Channels.push_back(std::move(out));
                ownership.push_back(own);
            };
            if (ch.mNumPositionKeys > 1) {
                keep(ChannelOf(node, SceneChannel::Path::Translation, ch.mPositionKeys,
                               ch.mNumPositionKeys, ticks, [](const aiVector3D& v) {
                                   return std::vector<float>{v.x, v.y, v.z};
                               }));
            }
            if (ch.mNumRotationKeys > 1) {
                keep(ChannelOf(node, SceneChannel::Path::Rotation, ch.mRotationKeys,
                               ch.mNumRotationKeys, ticks, [](const aiQuaternion& q) {
                                   return std::vector<float>{q.x, q.y, q.z, q.w};
                               }));
            }
            for (unsigned k = 1; k < ch.mNumScalingKeys; ++k) {
                const aiVector3D d = ch.mScalingKeys[k].mValue - ch.mScalingKeys[0].mValue;
                if (d.Length() > 1e-6f) scene.ScaleAnimated = true;
            }
        }
    }
    for (unsigned m = 0; m < s.mNumMeshes; ++m)
        scene.MorphTargets = scene.MorphTargets || s.mMeshes[m]->mNumAnimMeshes > 0;
}

}  // namespace

bool ReadAssimpScene(const std::string& path, ImportScene& scene, std::string& error) {
    Assimp::Importer importer;
    // Lines and points are of no use to a model; UVs as glTF has them (origin top left).
    importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE,
                                aiPrimitiveType_LINE | aiPrimitiveType_POINT);
    // One node per object (not a chain of pivot helpers), so animations name the object.
    importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_PRESERVE_PIVOTS, false);
    const aiScene* s = importer.ReadFile(
        path, aiProcess_SortByPType | aiProcess_FlipUVs | aiProcess_ValidateDataStructure);
    if (s == nullptr || s->mRootNode == nullptr) {
        error = importer.GetErrorString();
        if (error.empty()) error = "The file could not be read.";
        return false;
    }
    for (unsigned i = 0; i < s->mNumMaterials; ++i)
        scene.Materials.push_back(MaterialOf(*s->mMaterials[i]));
    std::vector<int> meshOf(s->mNumMeshes, -1);
    for (unsigned i = 0; i < s->mNumMeshes; ++i) {
        ScenePrimitive p = PrimitiveOf(*s->mMeshes[i]);
        if (p.Material >= static_cast<int>(scene.Materials.size())) p.Material = -1;
        if (p.FaceSizes.empty()) continue;
        scene.Meshes.push_back({{std::move(p)}});
        meshOf[i] = static_cast<int>(scene.Meshes.size()) - 1;
    }
    // The reader's own root holds the file's objects; without meshes of its own it is not
    // one of them.
    const aiNode& root = *s->mRootNode;
    const double unit = UnitScale(*s);
    const Transform scale = ComposeTransform({}, {0, 0, 0, 1}, {unit, unit, unit});
    scene.RootTransform = root.mNumMeshes == 0 ? Multiply(scale, LocalOf(root)) : scale;
    if (root.mNumMeshes == 0) {
        for (unsigned c = 0; c < root.mNumChildren; ++c)
            AddNode(*root.mChildren[c], -1, scene.RootTransform, scene, meshOf);
    } else {
        AddNode(root, -1, scene.RootTransform, scene, meshOf);
    }
    ReadAnimations(*s, scene);
    aiString generator;
    if (s->mMetaData != nullptr && s->mMetaData->Get("SourceAsset_Generator", generator))
        scene.ArrowsAlongZ = std::string(generator.C_Str()).rfind("Blender", 0) == 0;
    return true;
}

}  // namespace mw
