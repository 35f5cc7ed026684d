#include "convert/scene_model.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "convert/gltf_common.h"
#include "convert/polygon_merge.h"
#include "convert/scene_keys.h"
#include "model/game_check.h"
#include "model/geometry.h"
#include "model/properties.h"
#include "model/text_codec.h"
#include "model/texture_rename.h"

namespace mw {

using nlohmann::json;
using namespace gltf;

namespace {

// Texture names are kept short enough that the game loads their image (NAME.ogf); a longer
// name keeps its start and gets a short ending that keeps it apart from the others in the
// characters the game keeps of an image's name.
constexpr std::size_t kCutNameStart = kGameBitmapStemLength - 3;

// The vertices of a sub-object shared by place and normal (bit for bit): an open-addressing
// table of indices into the vertex list, which holds the keys itself (a standard map would
// allocate a node per vertex; on large files that was a third of the import).
class VertexTable {
  public:
    explicit VertexTable(std::size_t expected) {
        std::size_t capacity = 16;
        while (capacity < 2 * expected)
            capacity *= 2;
        slots_.assign(capacity, -1);
    }

    // The index of the vertex of `v`'s place and normal, added when there is none yet.
    int FindOrAdd(const Vertex& v, std::vector<Vertex>& vertices) {
        if (2 * (vertices.size() + 1) > slots_.size()) Grow(vertices);
        for (std::size_t i = Hash(v) & (slots_.size() - 1);; i = (i + 1) & (slots_.size() - 1)) {
            const int found = slots_[i];
            if (found < 0) {
                slots_[i] = static_cast<int>(vertices.size());
                vertices.push_back(v);
                return slots_[i];
            }
            if (SameKey(vertices[static_cast<std::size_t>(found)], v)) return found;
        }
    }

  private:
    static constexpr std::size_t kKeyBytes = 2 * sizeof(Vector3);  // place, then normal
    static_assert(offsetof(Vertex, Normal) == sizeof(Vector3));

    static bool SameKey(const Vertex& a, const Vertex& b) {
        return std::memcmp(&a, &b, kKeyBytes) == 0;
    }
    static std::size_t Hash(const Vertex& v) {
        std::uint64_t words[3];
        std::memcpy(words, &v, kKeyBytes);
        std::uint64_t h = 0;
        for (const std::uint64_t w : words)
            h = (h ^ w) * 0x9E3779B97F4A7C15ull;
        return static_cast<std::size_t>(h ^ (h >> 29));
    }
    void Grow(const std::vector<Vertex>& vertices) {
        slots_.assign(2 * slots_.size(), -1);
        for (std::size_t k = 0; k < vertices.size(); ++k) {
            std::size_t i = Hash(vertices[k]) & (slots_.size() - 1);
            while (slots_[i] >= 0)
                i = (i + 1) & (slots_.size() - 1);
            slots_[i] = static_cast<int>(k);
        }
    }

    std::vector<int> slots_;
};

}  // namespace

SceneModelBuilder::SceneModelBuilder(const ImportScene& scene) : s_(scene) {
    world_.resize(s_.Nodes.size());
    for (std::size_t n = 0; n < s_.Nodes.size(); ++n) {
        const SceneNode& node = s_.Nodes[n];
        world_[n] = node.Parent >= 0
                        ? Multiply(world_[static_cast<std::size_t>(node.Parent)], node.Local)
                        : node.Local;
    }
    subOf_.assign(s_.Nodes.size(), -1);
}

bool SceneModelBuilder::HasFaces(int node) const {
    for (const int mesh : s_.Nodes[static_cast<std::size_t>(node)].Meshes) {
        for (const ScenePrimitive& p : s_.Meshes[static_cast<std::size_t>(mesh)].Primitives) {
            if (!p.Indices.empty()) return true;
        }
    }
    return false;
}

bool SceneModelBuilder::AnyFaces() const {
    for (std::size_t n = 0; n < s_.Nodes.size(); ++n) {
        if (HasFaces(static_cast<int>(n))) return true;
    }
    return false;
}

// The hash the export keeps of a node's meshes; empty for none.
std::string SceneModelBuilder::Fingerprint(const std::vector<int>& meshes) const {
    gltf::Fingerprint print;
    bool any = false;
    for (const int mesh : meshes) {
        for (const ScenePrimitive& p : s_.Meshes[static_cast<std::size_t>(mesh)].Primitives) {
            print.AddValues(std::span(p.Positions));
            print.AddValues(std::span(p.Uvs));
            print.AddValues(std::span(p.Indices));
            any = true;
        }
    }
    return any ? print.Text() : std::string();
}

// A model from the nodes alone.
ModelData SceneModelBuilder::Generic() {
    const std::size_t count = s_.Nodes.size();
    std::vector<bool> holds(count, false);
    for (std::size_t n = count; n-- > 0;) {
        const SceneNode& node = s_.Nodes[n];
        const bool sub =
            HasFaces(static_cast<int>(n)) || (holds[n] && !ParsePointNodeName(node.Name));
        if (sub) subNodes_.push_back(static_cast<int>(n));
        if ((sub || holds[n]) && node.Parent >= 0)
            holds[static_cast<std::size_t>(node.Parent)] = true;
    }
    std::reverse(subNodes_.begin(), subNodes_.end());
    for (std::size_t i = 0; i < subNodes_.size(); ++i)
        subOf_[static_cast<std::size_t>(subNodes_[i])] = static_cast<int>(i);
    for (std::size_t i = 0; i < subNodes_.size(); ++i) {
        const int node = subNodes_[i];
        SubObject sub;
        sub.Index = static_cast<int>(i);
        sub.Parent = NearestSub(s_.Nodes[static_cast<std::size_t>(node)].Parent);
        sub.Name = Cp1252FromUtf8(s_.Nodes[static_cast<std::size_t>(node)].Name);
        if (sub.Name.empty()) sub.Name = "Unnamed" + std::to_string(i + 1);
        sub.Properties =
            Text1252(s_.Nodes[static_cast<std::size_t>(node)].Extras, "pof_properties");
        const Vector3 here = TranslationOf(world_[static_cast<std::size_t>(node)]);
        const Vector3 above = sub.Parent >= 0
                                  ? TranslationOf(world_[static_cast<std::size_t>(
                                        subNodes_[static_cast<std::size_t>(sub.Parent)])])
                                  : Vector3{};
        sub.Offset = Unmirror(Subtract(here, above));
        Transform bake = world_[static_cast<std::size_t>(node)];
        bake[12] = bake[13] = bake[14] = 0.0;
        Geometry(node, bake, sub);
        m_.SubObjects.push_back(std::move(sub));
    }
    Keys();
    for (const PointType type : {PointType::GPNT, PointType::ATCH, PointType::GRND}) {
        std::vector<std::pair<int, int>> found;  // index in the name, node
        for (std::size_t n = 0; n < count; ++n) {
            const auto name = ParsePointNodeName(s_.Nodes[n].Name);
            if (name && name->Type == type && !HasFaces(static_cast<int>(n)))
                found.emplace_back(name->Index, static_cast<int>(n));
        }
        std::stable_sort(found.begin(), found.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        for (const auto& [index, node] : found) {
            if (static_cast<int>(m_.Points(type).size()) >= PointLimit(type)) break;
            AddPointFromNode(type, node);
        }
    }
    Finish();
    return std::move(m_);
}

// The sub-objects' keys from their nodes' animation, and the frame range as a load sets it.
void SceneModelBuilder::Keys() {
    for (std::size_t i = 0; i < subNodes_.size(); ++i) {
        const int n = subNodes_[i];
        const SceneChannel* moves = nullptr;
        const SceneChannel* turns = nullptr;
        for (const SceneChannel& c : s_.Channels) {
            if (c.Node != n) continue;
            (c.Target == SceneChannel::Path::Rotation ? turns : moves) = &c;
        }
        if (moves == nullptr && turns == nullptr) continue;
        const SceneNode& node = s_.Nodes[static_cast<std::size_t>(n)];
        const Transform parent =
            node.Parent >= 0 ? world_[static_cast<std::size_t>(node.Parent)] : s_.RootTransform;
        SubObjectKeys keys =
            KeysFromChannels(moves, turns, node.Translation.value_or(TranslationOf(node.Local)),
                             node.Rotation.value_or(gltf::Quaternion{0, 0, 0, 1}), parent);
        SubObject& sub = m_.SubObjects[i];
        // A place that never leaves its rest needs no keys (some readers key every part).
        if (std::all_of(keys.Pos.begin(), keys.Pos.end(),
                        [](const PosKey& k) { return Length(k.Position) < 1e-6f; })) {
            keys.Pos.clear();
        }
        sub.Pos.Keys = std::move(keys.Pos);
        sub.Rot.Keys = std::move(keys.Rot);
        m_.HasPANI = m_.HasPANI || !sub.Pos.Keys.empty();
        m_.HasRANI = m_.HasRANI || !sub.Rot.Keys.empty();
        KeyCount += static_cast<int>(sub.Pos.Keys.size() + sub.Rot.Keys.size());
    }
    if (s_.ScaleAnimated)
        Notes.push_back("The file animates the scale of a part; models keep no scale keys.");
    if (s_.MorphTargets)
        Notes.push_back("The file has shape keys (morph targets); models keep no shape keys.");
    m_.FrameMin = 99999;
    m_.FrameMax = -99999;
    const auto range = [&](auto& track, bool counted) {
        if (!track.Keys.empty()) {
            track.FirstFrame = track.Keys.front().Frame;
            track.LastFrame = track.Keys.back().Frame;
        }
        if (!counted) return;
        m_.FrameMin = std::min(m_.FrameMin, track.FirstFrame);
        m_.FrameMax = std::max(m_.FrameMax, track.LastFrame);
    };
    for (SubObject& sub : m_.SubObjects) {
        range(sub.Pos, m_.HasPANI);
        range(sub.Rot, m_.HasRANI);
    }
    if (m_.FrameMin == 99999) m_.FrameMin = 0;
    if (m_.FrameMax == -99999) m_.FrameMax = 1;
    if (m_.FrameMin >= m_.FrameMax) {
        m_.FrameMin = 0;
        m_.FrameMax = 1;
    }
}

int SceneModelBuilder::NearestSub(int node) const {
    while (node >= 0) {
        if (subOf_[static_cast<std::size_t>(node)] >= 0)
            return subOf_[static_cast<std::size_t>(node)];
        node = s_.Nodes[static_cast<std::size_t>(node)].Parent;
    }
    return -1;
}

// A point (and for an attach point its normal) where its node puts it.
void SceneModelBuilder::SetPointFromNode(PointType type, int index, int node) {
    int sub = NearestSub(s_.Nodes[static_cast<std::size_t>(node)].Parent);
    if (sub < 0) sub = subNodes_.empty() ? -1 : 0;
    const Transform& w = world_[static_cast<std::size_t>(node)];
    const Vector3 origin =
        sub >= 0 ? TranslationOf(
                       world_[static_cast<std::size_t>(subNodes_[static_cast<std::size_t>(sub)])])
                 : Vector3{};
    const Vector3 position = Unmirror(Subtract(TranslationOf(w), origin));
    const Vector3 direction = Unmirror(UnitOr(TransformDirection(w, {0.0f, 1.0f, 0.0f}), {}));
    auto& list = m_.Points(type);
    const auto i = static_cast<std::size_t>(index);
    list[i] = {std::max(sub, 0), position, direction};
    if (type != PointType::ATCH) return;
    const Vector3 up = Unmirror(UnitOr(TransformDirection(w, {0.0f, 0.0f, -1.0f}), {}));
    if (i < m_.AttachNormals.size()) {
        m_.AttachNormals[i] = {std::max(sub, 0), position, up};
    } else if (i == m_.AttachNormals.size()) {
        m_.AttachNormals.push_back({std::max(sub, 0), position, up});
    }
}

void SceneModelBuilder::AddPointFromNode(PointType type, int node) {
    m_.Points(type).emplace_back();
    SetPointFromNode(type, static_cast<int>(m_.Points(type).size()) - 1, node);
}

// The colour of untextured faces a material stands for: one with a base colour and no
// picture (an OBJ "Kd" alone, a glTF material without a texture, our own "colour_rrggbb"
// materials whose extras are gone). nullopt for a material that names a texture.
std::optional<std::array<std::uint8_t, 3>> SceneModelBuilder::ColourOnly(int material) const {
    if (material < 0 || material >= static_cast<int>(s_.Materials.size())) return std::nullopt;
    const SceneMaterial& m = s_.Materials[static_cast<std::size_t>(material)];
    if (!m.Texture.empty() && !m.Untextured) return std::nullopt;
    std::array<std::uint8_t, 3> rgb{};
    unsigned r = 0, g = 0, b = 0;
    char end = 0;
    if (m.Name.size() == 13 &&
        std::sscanf(m.Name.c_str(), "colour_%2x%2x%2x%c", &r, &g, &b, &end) == 3) {
        return std::array<std::uint8_t, 3>{static_cast<std::uint8_t>(r),
                                           static_cast<std::uint8_t>(g),
                                           static_cast<std::uint8_t>(b)};
    }
    const bool white = m.Colour[0] >= 0.999f && m.Colour[1] >= 0.999f && m.Colour[2] >= 0.999f;
    if (!m.Untextured && (white || m.Default)) return std::nullopt;
    for (std::size_t i = 0; i < 3; ++i)
        rgb[i] = ByteFromLinear(m.Colour[i]);
    return rgb;
}

int SceneModelBuilder::TextureOf(int material) {
    if (material < 0 || material >= static_cast<int>(s_.Materials.size())) return -1;
    const SceneMaterial& m = s_.Materials[static_cast<std::size_t>(material)];
    if (m.Untextured || ColourOnly(material)) return -1;
    std::string name = m.Texture.empty() ? (m.Default ? std::string() : m.Name) : m.Texture;
    if (name.empty()) return -1;
    name = RenamedTexture(LowerCase1252(Cp1252FromUtf8(name)));
    if (const auto known = textureOfName_.find(name); known != textureOfName_.end())
        return known->second;
    std::string kept = name;
    if (kept.size() > kGameMaxTextureNameLength) {
        for (int n = 0; n < 100; ++n) {
            kept = name.substr(0, kCutNameStart) + "_" + (n < 10 ? "0" : "") + std::to_string(n);
            const bool taken = std::any_of(
                m_.Textures.begin(), m_.Textures.end(),
                [&](const Texture& t) { return t.Name.substr(0, kGameBitmapStemLength) == kept; });
            if (!taken) break;
        }
        Notes.push_back("The texture name \"" + Utf8From1252(name) + "\" is longer than the " +
                        std::to_string(kGameMaxTextureNameLength) +
                        " characters the game loads an image by; it is \"" + Utf8From1252(kept) +
                        "\" now.");
    }
    m_.Textures.push_back({{}, kept, kept});
    textureOfName_[name] = static_cast<int>(m_.Textures.size()) - 1;
    return static_cast<int>(m_.Textures.size()) - 1;
}

// The faces of a node's meshes, moved by `bake` (the node's rotation and scale) into
// the sub-object and into the game's space; vertices shared where position and normal
// agree.
void SceneModelBuilder::Geometry(int node, const Transform& bake, SubObject& sub) {
    std::size_t vertexCount = 0;
    for (const int mesh : s_.Nodes[static_cast<std::size_t>(node)].Meshes) {
        for (const ScenePrimitive& p : s_.Meshes[static_cast<std::size_t>(mesh)].Primitives)
            vertexCount += p.VertexCount();
    }
    VertexTable shared(vertexCount);
    sub.Vertices.reserve(vertexCount);
    const bool identity = IsIdentity(bake);
    const Transform normalBake = NormalTransform(bake);
    bool anyMissingNormals = false;
    for (const int mesh : s_.Nodes[static_cast<std::size_t>(node)].Meshes) {
        for (const ScenePrimitive& p : s_.Meshes[static_cast<std::size_t>(mesh)].Primitives) {
            const bool normals = p.Normals.size() == p.Positions.size();
            anyMissingNormals = anyMissingNormals || !normals;
            const int texture = TextureOf(p.Material);
            std::array<std::uint8_t, 4> colour{255, 255, 255, 255};
            if (texture < 0) {
                if (const auto rgb = ColourOnly(p.Material))
                    std::copy(rgb->begin(), rgb->end(), colour.begin());
            }
            const bool vertexColours = texture < 0 && p.Colours.size() == p.Positions.size();
            // Each vertex of the primitive once, in the game's space.
            std::vector<int> index(p.VertexCount());
            std::vector<Vector3> position(p.VertexCount());
            for (std::size_t v = 0; v < p.VertexCount(); ++v) {
                const Vector3 pos{p.Positions[3 * v], p.Positions[3 * v + 1],
                                  p.Positions[3 * v + 2]};
                Vertex vertex;
                vertex.Position = Unmirror(identity ? pos : TransformPoint(bake, pos));
                if (normals) {
                    const Vector3 n{p.Normals[3 * v], p.Normals[3 * v + 1], p.Normals[3 * v + 2]};
                    vertex.Normal =
                        Unmirror(UnitOr(identity ? n : TransformDirection(normalBake, n), {}));
                }
                position[v] = vertex.Position;
                index[v] = shared.FindOrAdd(vertex, sub.Vertices);
            }
            std::size_t at = 0;
            const std::size_t faces =
                p.FaceSizes.empty() ? p.Indices.size() / 3 : p.FaceSizes.size();
            for (std::size_t f = 0; f < faces; ++f) {
                const std::size_t size = p.FaceSizes.empty() ? 3 : p.FaceSizes[f];
                Face face;
                face.VertexCount = static_cast<std::int32_t>(size);
                face.Primitive = PrimitiveFor(face.VertexCount);
                face.TextureIndex = texture;
                face.Textured = texture >= 0 ? 1 : 0;
                face.Color = colour;
                if (vertexColours) {
                    // A face takes the colour of its first corner.
                    const std::size_t v = p.Indices[at];
                    for (std::size_t i = 0; i < 3; ++i)
                        face.Color[i] = ByteFromLinear(p.Colours[3 * v + i]);
                }
                // Newell's normal of the corners in the file's order, in the file's space;
                // the game's space is mirrored, so the corners go in reverse.
                Vector3 normal{};
                for (std::size_t c = 0; c < size; ++c) {
                    const Vector3 a = Unmirror(position[p.Indices[at + c]]);
                    const Vector3 b = Unmirror(position[p.Indices[at + (c + 1) % size]]);
                    normal.X += (a.Y - b.Y) * (a.Z + b.Z);
                    normal.Y += (a.Z - b.Z) * (a.X + b.X);
                    normal.Z += (a.X - b.X) * (a.Y + b.Y);
                }
                face.Normal = Unmirror(UnitOr(normal, {}));
                for (std::size_t c = size; c-- > 0;) {
                    const std::uint32_t v = p.Indices[at + c];
                    const bool uv = p.Uvs.size() >= 2 * p.VertexCount();
                    sub.Corners.push_back(
                        {index[v], uv ? p.Uvs[2 * v] : 0.0f, uv ? p.Uvs[2 * v + 1] : 0.0f});
                }
                sub.Faces.push_back(face);
                at += size;
            }
        }
    }
    if (anyMissingNormals) FaceAveragedNormals(sub);
    // Triangles back into the polygons they were cut from; a glow, thruster or facing part
    // is drawn as one face of at most 30 corners.
    ParseProperties(sub);
    const bool single = (sub.PropertyFlags & (kPropFacing | kPropGlow)) != 0;
    MergedTriangles +=
        MergeCoplanarTriangles(sub, single ? kGameMaxSingleFaceCorners : kGameMaxFaceCorners);
    sub.BoxMin = {90000.0f, 90000.0f, 90000.0f};
    sub.BoxMax = {-90000.0f, -90000.0f, -90000.0f};
    for (const Vertex& v : sub.Vertices) {
        sub.BoxMin = ComponentMin(sub.BoxMin, v.Position);
        sub.BoxMax = ComponentMax(sub.BoxMax, v.Position);
        sub.Radius = std::max(sub.Radius, Length(v.Position));
    }
    if (!sub.Vertices.empty()) sub.Center = Midpoint(sub.BoxMin, sub.BoxMax);
}

// Vertex normals as the mean of the normals of the faces around each vertex, where the
// file gave none.
void SceneModelBuilder::FaceAveragedNormals(SubObject& sub) {
    std::vector<Vector3> sum(sub.Vertices.size());
    std::size_t corner = 0;
    for (const Face& f : sub.Faces) {
        for (int c = 0; c < f.VertexCount; ++c, ++corner) {
            const auto v = static_cast<std::size_t>(sub.Corners[corner].VertexIndex);
            sum[v] = Add(sum[v], f.Normal);
        }
    }
    for (std::size_t v = 0; v < sub.Vertices.size(); ++v) {
        if (sub.Vertices[v].Normal == Vector3{}) sub.Vertices[v].Normal = UnitOr(sum[v], {});
    }
}

void SceneModelBuilder::Finish() {
    RebuildSaveOrder(m_);
    MoveSOBJ(m_);
}

}  // namespace mw
