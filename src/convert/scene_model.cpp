#include "convert/scene_model.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "convert/gltf_common.h"
#include "convert/scene_keys.h"
#include "model/game_check.h"
#include "model/geometry.h"
#include "model/properties.h"
#include "model/text_codec.h"

namespace mw {

using nlohmann::json;
using namespace gltf;

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

// What a build leaves behind, gone: one builder tries the exact way, then the generic one.
void SceneModelBuilder::Reset() {
    subNodes_.clear();
    subOf_.assign(s_.Nodes.size(), -1);
    m_ = ModelData{};
    textureOfName_.clear();
    Notes.clear();
    MergedTriangles = 0;
}

// A model from the nodes alone.
ModelData SceneModelBuilder::Generic() {
    Reset();
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
    const Vector3 arrow = s_.ArrowsAlongZ ? Vector3{0.0f, 0.0f, 1.0f} : Vector3{0.0f, 1.0f, 0.0f};
    const Vector3 direction = Unmirror(UnitOr(TransformDirection(w, arrow), {}));
    auto& list = m_.Points(type);
    const auto i = static_cast<std::size_t>(index);
    list[i] = {std::max(sub, 0), position, direction};
    if (type != PointType::ATCH) return;
    const Vector3 upward = s_.ArrowsAlongZ ? Vector3{0.0f, 1.0f, 0.0f} : Vector3{0.0f, 0.0f, -1.0f};
    const Vector3 up = Unmirror(UnitOr(TransformDirection(w, upward), {}));
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

void SceneModelBuilder::Finish() {
    RebuildSaveOrder(m_);
    MoveSOBJ(m_);
}

}  // namespace mw
