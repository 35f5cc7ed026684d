#include "convert/scene_model.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <map>

#include "convert/gltf_common.h"
#include "model/text_codec.h"
#include "model/texture_rename.h"

namespace mw {

using nlohmann::json;
using namespace gltf;

namespace {

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

}  // namespace

int SceneModelBuilder::ExactOrder(const json& sub) {
    return IntFrom(Member(sub, "record"), -1);
}

// The model our own export wrote, or nullopt when the file is not one or has been
// changed past what the extras can follow (sub-objects added or removed).
std::optional<ModelData> SceneModelBuilder::Exact() {
    Reset();
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
    if (std::find(subNodes_.begin(), subNodes_.end(), -1) != subNodes_.end()) return std::nullopt;

    m_.Version = Value<int>(e, "version", 0);
    m_.Header.Radius = FloatFrom(Member(e, "radius"));
    m_.Header.Min = VectorFrom(Member(e, "min"));
    m_.Header.Max = VectorFrom(Member(e, "max"));
    if (e.contains("header_list") && e["header_list"].is_array()) {
        for (const json& v : e["header_list"])
            m_.HeaderList.push_back(IntFrom(v));
    }
    m_.PinfText = Text1252(e, "pinf");
    m_.FrameMin = Value<int>(e, "frame_min", 0);
    m_.FrameMax = Value<int>(e, "frame_max", 1);
    m_.HasPANI = Value<bool>(e, "has_pani", false);
    m_.HasRANI = Value<bool>(e, "has_rani", false);
    const json& textures = Member(e, "textures");
    const int textureCount = std::min(Value<int>(e, "texture_count", 0),
                                      textures.is_object() ? static_cast<int>(textures.size()) : 0);
    for (int t = 0; t < textureCount; ++t) {
        const json& entry = Member(textures, std::to_string(t).c_str());
        Texture texture;
        texture.Name = Text1252(entry, "name");
        texture.GameName = Text1252(entry, "game_name");
        texture.LoadedName = texture.Name;
        // A mesh edited since (taken from the file) finds its materials' textures here.
        textureOfName_.emplace(RenamedTexture(LowerCase1252(texture.Name)), t);
        m_.Textures.push_back(std::move(texture));
    }
    if (e.contains("special") && e["special"].is_object()) {
        const json& sp = e["special"];
        m_.Special =
            SpecialPoint{Text1252(sp, "name"), Text1252(sp, "properties"),
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
    // Parents the extras give that leave a sub-object out of the hierarchy (a loop, or one
    // that does not exist): as the reader refuses such a file, the extras are not used.
    if (m_.SubObjectCount() != static_cast<int>(m_.SubObjects.size())) return std::nullopt;
    // So are points on sub-objects the model does not have: their nodes hang nowhere.
    for (const PointType type : kPointTypes) {
        for (const ModelPoint& p : m_.Points(type)) {
            if (p.Parent >= static_cast<int>(m_.SubObjects.size())) return std::nullopt;
        }
    }
    return std::move(m_);
}

SubObject SceneModelBuilder::ExactSubObject(int node) {
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
    sub.Properties = Text1252(n.Extras, "pof_properties");
    const json& pos = Member(e, "position_keys");
    sub.Pos.FirstFrame = Value<int>(pos, "first", 0);
    sub.Pos.LastFrame = Value<int>(pos, "last", 0);
    const json& posKeys = Member(pos, "keys");
    for (std::size_t k = 0; posKeys.is_array() && k + 4 <= posKeys.size(); k += 4) {
        sub.Pos.Keys.push_back(
            {IntFrom(posKeys[k]),
             {FloatFrom(posKeys[k + 1]), FloatFrom(posKeys[k + 2]), FloatFrom(posKeys[k + 3])}});
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

void SceneModelBuilder::ExactPoints(const json& e) {
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
                const bool same = n.Translation && n.Rotation &&
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

}  // namespace mw
