#include "convert/model_import.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <map>
#include <unordered_map>

#include "convert/scene_transform.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "model/properties.h"
#include "model/text_codec.h"
#include "model/texture_rename.h"

namespace mw {
namespace {

using nlohmann::json;
using namespace gltf;

// Texture names are kept short enough that the name and ".ogf" fit an archive entry.
constexpr std::size_t kTextureNameLength = 31;

struct FaceRecord {
    Vector3 Normal;
    std::int32_t VertexCount, Textured, TextureIndex;
    std::array<std::uint8_t, 4> Color;
    std::uint32_t KeptA, KeptB;
    std::int32_t Primitive;
};
static_assert(sizeof(FaceRecord) == 40 && sizeof(Vertex) == 28 && sizeof(FaceVertex) == 12);

// Records kept in a buffer view, when the view still holds what was written there.
template <typename T>
std::optional<std::vector<T>> BlockOf(const ImportScene& scene, const json& extras,
                                      const char* key) {
    if (!extras.contains(key) || !extras[key].is_object()) return std::nullopt;
    const json& block = extras[key];
    if (BoolFrom(Member(block, "empty"))) return std::vector<T>{};
    const auto found = scene.Blocks.find(IntFrom(Member(block, "buffer_view"), -1));
    if (found == scene.Blocks.end()) return std::nullopt;
    const std::vector<std::uint8_t>& bytes = found->second;
    if (bytes.size() % sizeof(T) != 0 || StringFrom(Member(block, "check")) != BlockCheck(bytes))
        return std::nullopt;
    std::vector<T> values(bytes.size() / sizeof(T));
    if (!values.empty()) std::memcpy(values.data(), bytes.data(), bytes.size());
    return values;
}

template <typename T>
T Value(const json& j, const char* key, T fallback) {
    if constexpr (std::is_same_v<T, bool>) {
        return BoolFrom(Member(j, key), fallback);
    } else {
        return IntFrom(Member(j, key), fallback);
    }
}

std::string Text(const json& j, const char* key) {
    if (!j.is_object() || !j.contains(key) || !j[key].is_string()) return {};
    return Cp1252FromUtf8(j[key].get<std::string>());
}

const json& Descent3(const json& extras) {
    static const json kNone;
    if (extras.is_object() && extras.contains(kExtrasKey) && extras[kExtrasKey].is_object())
        return extras[kExtrasKey];
    return kNone;
}

// Equal as numbers (0 and -0 alike), or in every bit (not-a-number alike).
bool SamePlace(Vector3 a, Vector3 b) {
    return a == b || std::bit_cast<std::array<std::uint32_t, 3>>(a) ==
                         std::bit_cast<std::array<std::uint32_t, 3>>(b);
}

bool SameRotation(const Quaternion& a, const Quaternion& b) {
    double same = 0.0, opposite = 0.0;
    for (std::size_t i = 0; i < 4; ++i) {
        same = std::max(same, std::fabs(a[i] - b[i]));
        opposite = std::max(opposite, std::fabs(a[i] + b[i]));
    }
    return std::min(same, opposite) < 1e-6;
}

Vector3 UnitOrZero(Vector3 v) {
    const float length = Length(v);
    if (!(length > 0.0f) || !std::isfinite(length)) return {};
    return {v.X / length, v.Y / length, v.Z / length};
}

class Builder {
  public:
    Builder(const ImportScene& scene) : s_(scene) {
        world_.resize(s_.Nodes.size());
        for (std::size_t n = 0; n < s_.Nodes.size(); ++n) {
            const SceneNode& node = s_.Nodes[n];
            world_[n] = node.Parent >= 0
                            ? Multiply(world_[static_cast<std::size_t>(node.Parent)], node.Local)
                            : node.Local;
        }
        subOf_.assign(s_.Nodes.size(), -1);
    }

    bool HasFaces(int node) const {
        for (const int mesh : s_.Nodes[static_cast<std::size_t>(node)].Meshes) {
            for (const ScenePrimitive& p : s_.Meshes[static_cast<std::size_t>(mesh)].Primitives) {
                if (!p.Indices.empty()) return true;
            }
        }
        return false;
    }

    bool AnyFaces() const {
        for (std::size_t n = 0; n < s_.Nodes.size(); ++n) {
            if (HasFaces(static_cast<int>(n))) return true;
        }
        return false;
    }

    // The hash the export keeps of a node's meshes; empty for none.
    std::string Fingerprint(const std::vector<int>& meshes) const {
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
    ModelData Generic() {
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
                Text(s_.Nodes[static_cast<std::size_t>(node)].Extras, "pof_properties");
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

    // The model our own export wrote, or nullopt when the file is not one or has been
    // changed past what the extras can follow (sub-objects added or removed).
    std::optional<ModelData> Exact() {
        // The model's fields are kept with the node of the first sub-object.
        const json* model = nullptr;
        for (const SceneNode& node : s_.Nodes) {
            const json& sub = Descent3(node.Extras);
            if (ExactOrder(sub) == 0 && Member(sub, "model").is_object()) model = &sub["model"];
        }
        if (model == nullptr) return std::nullopt;
        const json& e = *model;
        const int count = Value<int>(e, "sub_objects", -1);
        if (count < 0 || count > 100000) return std::nullopt;
        subNodes_.assign(static_cast<std::size_t>(count), -1);
        for (std::size_t n = 0; n < s_.Nodes.size(); ++n) {
            const json& sub = Descent3(s_.Nodes[n].Extras);
            if (!sub.is_object()) {
                if (HasFaces(static_cast<int>(n))) return std::nullopt;
                continue;
            }
            const int order = ExactOrder(sub);
            if (order < 0 || order >= count || subNodes_[static_cast<std::size_t>(order)] != -1)
                return std::nullopt;
            subNodes_[static_cast<std::size_t>(order)] = static_cast<int>(n);
            subOf_[n] = order;
        }
        if (std::find(subNodes_.begin(), subNodes_.end(), -1) != subNodes_.end())
            return std::nullopt;

        m_.Version = Value<int>(e, "version", 0);
        m_.Header.Radius = FloatFrom(Member(e, "radius"));
        m_.Header.Min = VectorFrom(Member(e, "min"));
        m_.Header.Max = VectorFrom(Member(e, "max"));
        if (e.contains("header_list") && e["header_list"].is_array()) {
            for (const json& v : e["header_list"])
                m_.HeaderList.push_back(IntFrom(v));
        }
        m_.PinfText = Text(e, "pinf");
        m_.FrameMin = Value<int>(e, "frame_min", 0);
        m_.FrameMax = Value<int>(e, "frame_max", 1);
        m_.HasPANI = Value<bool>(e, "has_pani", false);
        m_.HasRANI = Value<bool>(e, "has_rani", false);
        const json& textures = Member(e, "textures");
        const int textureCount =
            std::min(Value<int>(e, "texture_count", 0),
                     textures.is_object() ? static_cast<int>(textures.size()) : 0);
        for (int t = 0; t < textureCount; ++t) {
            const json& entry = Member(textures, std::to_string(t).c_str());
            Texture texture;
            texture.Name = Text(entry, "name");
            texture.GameName = Text(entry, "game_name");
            texture.LoadedName = texture.Name;
            m_.Textures.push_back(std::move(texture));
        }
        if (e.contains("special") && e["special"].is_object()) {
            const json& sp = e["special"];
            m_.Special =
                SpecialPoint{Text(sp, "name"), Text(sp, "properties"),
                             VectorFrom(Member(sp, "position")), FloatFrom(Member(sp, "radius"))};
        }
        const json& batteries = Member(e, "batteries");
        const int batteryCount = std::min(Value<int>(e, "battery_count", 0), kMaxBatteries);
        for (int b = 0; b < batteryCount; ++b) {
            const json& entry = Member(batteries, std::to_string(b).c_str());
            WeaponBattery battery;
            for (const json& v : Member(entry, "guns"))
                battery.GunPoints.push_back(IntFrom(v));
            for (const json& v : Member(entry, "turrets"))
                battery.Turrets.push_back(IntFrom(v));
            m_.Batteries.push_back(std::move(battery));
        }
        for (int i = 0; i < count; ++i)
            m_.SubObjects.push_back(ExactSubObject(subNodes_[static_cast<std::size_t>(i)]));
        ExactPoints(e);
        RebuildSaveOrder(m_);
        return std::move(m_);
    }

  private:
    // Sub-objects come back in the order of their records, which the export numbered.
    static int ExactOrder(const json& sub) { return Value<int>(sub, "record", -1); }

    SubObject ExactSubObject(int node) {
        const SceneNode& n = s_.Nodes[static_cast<std::size_t>(node)];
        const json& e = Descent3(n.Extras);
        SubObject sub;
        sub.Index = Value<int>(e, "index", 0);
        sub.Parent = Value<int>(e, "parent", -1);
        sub.KeptVectorA = VectorFrom(Member(e, "kept_vector_a"));
        sub.KeptFloat = FloatFrom(Member(e, "kept_float"));
        sub.KeptVectorB = VectorFrom(Member(e, "kept_vector_b"));
        sub.Offset = VectorFrom(Member(e, "offset"));
        sub.Radius = FloatFrom(Member(e, "radius"));
        sub.KeptIntA = Value<int>(e, "kept_int_a", 0);
        sub.KeptIntB = Value<int>(e, "kept_int_b", 0);
        sub.Center = VectorFrom(Member(e, "center"));
        sub.KeptIntC = Value<int>(e, "kept_int_c", 0);
        sub.KeptIntD = Value<int>(e, "kept_int_d", 0);
        sub.Name = Cp1252FromUtf8(n.Name);
        sub.Properties = Text(n.Extras, "pof_properties");
        const json& pos = Member(e, "position_keys");
        sub.Pos.FirstFrame = Value<int>(pos, "first", 0);
        sub.Pos.LastFrame = Value<int>(pos, "last", 0);
        const json& posKeys = Member(pos, "keys");
        for (std::size_t k = 0; posKeys.is_array() && k + 4 <= posKeys.size(); k += 4) {
            sub.Pos.Keys.push_back({IntFrom(posKeys[k]),
                                    {FloatFrom(posKeys[k + 1]), FloatFrom(posKeys[k + 2]),
                                     FloatFrom(posKeys[k + 3])}});
        }
        const json& rot = Member(e, "rotation_keys");
        sub.Rot.FirstFrame = Value<int>(rot, "first", 0);
        sub.Rot.LastFrame = Value<int>(rot, "last", 0);
        const json& rotKeys = Member(rot, "keys");
        for (std::size_t k = 0; rotKeys.is_array() && k + 5 <= rotKeys.size(); k += 5) {
            sub.Rot.Keys.push_back(
                {IntFrom(rotKeys[k]),
                 {FloatFrom(rotKeys[k + 1]), FloatFrom(rotKeys[k + 2]), FloatFrom(rotKeys[k + 3])},
                 IntFrom(rotKeys[k + 4]),
                 IdentityMatrix()});
        }
        // An offset moved in another program wins over the one kept; not for a sub-object
        // with position keys, whose node such programs write in the pose of their first frame.
        const Vector3 translation = n.Translation ? *n.Translation : TranslationOf(n.Local);
        if (sub.Pos.Keys.empty() && !SamePlace(translation, Mirror(sub.Offset)))
            sub.Offset = Unmirror(translation);
        const std::string kept = StringFrom(Member(e, "mesh_fingerprint"));
        const std::string now = Fingerprint(n.Meshes);
        auto vertices = BlockOf<Vertex>(s_, e, "vertices");
        auto faces = BlockOf<FaceRecord>(s_, e, "faces");
        auto corners = BlockOf<FaceVertex>(s_, e, "corners");
        if (now == kept && vertices && faces && corners) {
            sub.Vertices = std::move(*vertices);
            sub.Corners = std::move(*corners);
            for (const FaceRecord& f : *faces) {
                Face face;
                face.Normal = f.Normal;
                face.VertexCount = f.VertexCount;
                face.Textured = f.Textured;
                face.TextureIndex = f.TextureIndex;
                face.Color = f.Color;
                face.FaceKeptA = f.KeptA;
                face.FaceKeptB = f.KeptB;
                face.Primitive = f.Primitive;
                sub.Faces.push_back(face);
            }
        } else {
            // The mesh was edited: its faces as the file now has them.
            Transform bake = n.Local;
            bake[12] = bake[13] = bake[14] = 0.0;
            Geometry(node, bake, sub);
            sub.Radius = 0.0f;
            for (const Vertex& v : sub.Vertices)
                sub.Radius = std::max(sub.Radius, Length(v.Position));
        }
        return sub;
    }

    void ExactPoints(const json& e) {
        std::map<std::pair<PointType, int>, int> nodes;
        for (std::size_t n = 0; n < s_.Nodes.size(); ++n) {
            if (const auto name = ParsePointNodeName(s_.Nodes[n].Name);
                name && !HasFaces(static_cast<int>(n)))
                nodes.emplace(std::pair{name->Type, name->Index}, static_cast<int>(n));
        }
        const json& points = Member(e, "points");
        for (const PointType type : kPointTypes) {
            const char* tag = PointTag(type);
            const json& list = Member(points, tag);
            for (std::size_t k = 0; list.is_array() && k + 7 <= list.size(); k += 7) {
                const auto at = [&](std::size_t i) { return FloatFrom(list[k + i]); };
                m_.Points(type).push_back(
                    {IntFrom(list[k]), {at(1), at(2), at(3)}, {at(4), at(5), at(6)}});
            }
        }
        for (const PointType type : {PointType::GPNT, PointType::ATCH, PointType::GRND}) {
            auto& list = m_.Points(type);
            const std::size_t kept = list.size();
            for (const auto& [key, node] : nodes) {
                if (key.first != type) continue;
                const auto i = static_cast<std::size_t>(key.second);
                if (i < kept) {
                    const SceneNode& n = s_.Nodes[static_cast<std::size_t>(node)];
                    const bool same =
                        n.Translation && n.Rotation &&
                        SamePlace(*n.Translation, Mirror(list[i].Position)) &&
                        SameRotation(*n.Rotation, PointRotation(m_, type, key.second)) &&
                        NearestSub(n.Parent) == list[i].Parent;
                    if (!same) SetPointFromNode(type, key.second, node);
                } else if (static_cast<int>(list.size()) < PointLimit(type)) {
                    AddPointFromNode(type, node);
                }
            }
        }
    }

    int NearestSub(int node) const {
        while (node >= 0) {
            if (subOf_[static_cast<std::size_t>(node)] >= 0)
                return subOf_[static_cast<std::size_t>(node)];
            node = s_.Nodes[static_cast<std::size_t>(node)].Parent;
        }
        return -1;
    }

    // A point (and for an attach point its normal) where its node puts it.
    void SetPointFromNode(PointType type, int index, int node) {
        int sub = NearestSub(s_.Nodes[static_cast<std::size_t>(node)].Parent);
        if (sub < 0) sub = subNodes_.empty() ? -1 : 0;
        const Transform& w = world_[static_cast<std::size_t>(node)];
        const Vector3 origin =
            sub >= 0
                ? TranslationOf(
                      world_[static_cast<std::size_t>(subNodes_[static_cast<std::size_t>(sub)])])
                : Vector3{};
        const Vector3 position = Unmirror(Subtract(TranslationOf(w), origin));
        const Vector3 direction = Unmirror(UnitOrZero(TransformDirection(w, {0.0f, 1.0f, 0.0f})));
        auto& list = m_.Points(type);
        const auto i = static_cast<std::size_t>(index);
        list[i] = {std::max(sub, 0), position, direction};
        if (type != PointType::ATCH) return;
        const Vector3 up = Unmirror(UnitOrZero(TransformDirection(w, {0.0f, 0.0f, -1.0f})));
        if (i < m_.AttachNormals.size()) {
            m_.AttachNormals[i] = {std::max(sub, 0), position, up};
        } else if (i == m_.AttachNormals.size()) {
            m_.AttachNormals.push_back({std::max(sub, 0), position, up});
        }
    }

    void AddPointFromNode(PointType type, int node) {
        m_.Points(type).emplace_back();
        SetPointFromNode(type, static_cast<int>(m_.Points(type).size()) - 1, node);
    }

    int TextureOf(int material) {
        if (material < 0 || material >= static_cast<int>(s_.Materials.size())) return -1;
        const SceneMaterial& m = s_.Materials[static_cast<std::size_t>(material)];
        if (m.Untextured) return -1;
        std::string name = m.Texture.empty() ? (m.Default ? std::string() : m.Name) : m.Texture;
        if (name.empty()) return -1;
        name = LowerCase1252(Cp1252FromUtf8(name));
        if (name.size() > kTextureNameLength) name.resize(kTextureNameLength);
        name = RenamedTexture(name);
        for (std::size_t t = 0; t < m_.Textures.size(); ++t) {
            if (m_.Textures[t].Name == name) return static_cast<int>(t);
        }
        m_.Textures.push_back({{}, name, name});
        return static_cast<int>(m_.Textures.size()) - 1;
    }

    // The faces of a node's meshes, moved by `bake` (the node's rotation and scale) into
    // the sub-object and into the game's space; vertices shared where position and normal
    // agree.
    void Geometry(int node, const Transform& bake, SubObject& sub) {
        struct Key {
            std::array<std::uint32_t, 6> bits;
            bool operator==(const Key&) const = default;
        };
        struct KeyHash {
            std::size_t operator()(const Key& k) const {
                // Three 64-bit words mixed by multiplication, then folded.
                std::uint64_t h = 0;
                for (std::size_t i = 0; i < 6; i += 2) {
                    const std::uint64_t word = k.bits[i] | std::uint64_t{k.bits[i + 1]} << 32;
                    h = (h ^ word) * 0x9E3779B97F4A7C15ull;
                }
                return static_cast<std::size_t>(h ^ (h >> 32));
            }
        };
        std::unordered_map<Key, int, KeyHash> shared;
        std::size_t vertexCount = 0;
        for (const int mesh : s_.Nodes[static_cast<std::size_t>(node)].Meshes) {
            for (const ScenePrimitive& p : s_.Meshes[static_cast<std::size_t>(mesh)].Primitives)
                vertexCount += p.VertexCount();
        }
        shared.reserve(vertexCount);
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
                if (texture < 0 && p.Material >= 0 &&
                    p.Material < static_cast<int>(s_.Materials.size())) {
                    const auto& c = s_.Materials[static_cast<std::size_t>(p.Material)].Colour;
                    for (std::size_t i = 0; i < 3; ++i)
                        colour[i] = ByteFromLinear(c[i]);
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
                        const Vector3 n{p.Normals[3 * v], p.Normals[3 * v + 1],
                                        p.Normals[3 * v + 2]};
                        vertex.Normal =
                            Unmirror(UnitOrZero(identity ? n : TransformDirection(normalBake, n)));
                    }
                    position[v] = vertex.Position;
                    Key key{};
                    std::memcpy(key.bits.data(), &vertex.Position, 12);
                    std::memcpy(key.bits.data() + 3, &vertex.Normal, 12);
                    const auto [it, added] = shared.try_emplace(key, sub.VertexCount());
                    if (added) sub.Vertices.push_back(vertex);
                    index[v] = it->second;
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
                    face.Normal = Unmirror(UnitOrZero(normal));
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
    static void FaceAveragedNormals(SubObject& sub) {
        std::vector<Vector3> sum(sub.Vertices.size());
        std::size_t corner = 0;
        for (const Face& f : sub.Faces) {
            for (int c = 0; c < f.VertexCount; ++c, ++corner) {
                const auto v = static_cast<std::size_t>(sub.Corners[corner].VertexIndex);
                sum[v] = Add(sum[v], f.Normal);
            }
        }
        for (std::size_t v = 0; v < sub.Vertices.size(); ++v) {
            if (sub.Vertices[v].Normal == Vector3{}) sub.Vertices[v].Normal = UnitOrZero(sum[v]);
        }
    }

    void Finish() {
        RebuildSaveOrder(m_);
        MoveSOBJ(m_);
    }

    const ImportScene& s_;
    std::vector<Transform> world_;
    std::vector<int> subNodes_;  // node of each sub-object
    std::vector<int> subOf_;     // sub-object of each node, or -1
    ModelData m_;
};

}  // namespace

bool IsGltfName(const std::filesystem::path& path) {
    const std::string ext = LowerCase1252(path.extension().string());
    return ext == ".gltf" || ext == ".glb";
}

ImportResult ModelFromScene(const ImportScene& scene, const ImportOptions& options) {
    ImportResult result;
    Builder builder(scene);
    if (!builder.AnyFaces()) {
        result.Status = ImportStatus::NoMesh;
        result.Error = "The file holds no mesh.";
        return result;
    }
    ModelData model;
    if (auto exact = builder.Exact()) {
        model = std::move(*exact);
        result.Exact = true;
    } else {
        model = Builder(scene).Generic();
    }
    if (options.Scale != 1.0f && ScaleModel(model, options.Scale * 100.0f) != ScaleResult::Done) {
        result.Status = ImportStatus::BadScale;
        result.Error = "At that scale the model would be too small or too large for the game.";
        return result;
    }
    if (result.Exact) {
        // Whatever the extras say, the model must be one the reader takes.
        ModelData copy = model;
        ModelData check;
        if (readOOF(check, WriteOOF(copy)) != ResultCode::Success) {
            result.Status = ImportStatus::Unreadable;
            result.Error = "The model kept in the file's extras is damaged.";
            return result;
        }
    }
    // Derived as a load derives it. Not through a write and a read: a save turns the axes
    // of keys with no angle, so the kept keys would not come back.
    for (std::size_t s = 0; s < model.SubObjects.size(); ++s) {
        SubObject& sub = model.SubObjects[s];
        ParseProperties(sub);
        sub.BoxMin = {90000.0f, 90000.0f, 90000.0f};
        sub.BoxMax = {-90000.0f, -90000.0f, -90000.0f};
        sub.HasAlpha = false;
        for (const Vertex& v : sub.Vertices) {
            sub.BoxMin = ComponentMin(sub.BoxMin, v.Position);
            sub.BoxMax = ComponentMax(sub.BoxMax, v.Position);
            if (v.Alpha < 0.99f) sub.HasAlpha = true;
        }
        CalcRotMatrix(model, static_cast<int>(s));
    }
    result.Model = std::move(model);
    CreatePushPop(result.Model);
    return result;
}

ImportResult ImportModel(const std::filesystem::path& path, const ImportOptions& options) {
    ImportScene scene;
    std::string error;
    const bool read = IsGltfName(path) ? ReadGltfScene(path.string(), scene, error)
                                       : ReadAssimpScene(path.string(), scene, error);
    if (!read) {
        ImportResult result;
        result.Status = ImportStatus::Unreadable;
        result.Error = error;
        return result;
    }
    return ModelFromScene(scene, options);
}

}  // namespace mw
