#include "convert/gltf_animation_writer.h"

namespace mw::gltf {
namespace {

using nlohmann::json;

// glTF wants times that increase, from 0: keys at negative or repeated frames stay in
// the extras only.
template <typename Key>
std::vector<Key> AnimatedKeys(const std::vector<Key>& keys) {
    std::vector<Key> kept;
    for (const Key& k : keys) {
        if (k.Frame >= 0 && (kept.empty() || k.Frame > kept.back().Frame)) kept.push_back(k);
    }
    return kept;
}

}  // namespace

json AnimationJson(const ModelData& model, BufferBuilder& buffers) {
    json channels = json::array(), samplers = json::array();
    const auto sampler = [&](const std::vector<float>& times, const std::vector<float>& values,
                             const char* type, int node, const char* path) {
        const int count = static_cast<int>(times.size());
        const int input = buffers.Accessor(times, kFloat, "SCALAR", count, std::nullopt, true);
        const int output = buffers.Accessor(values, kFloat, type, count, std::nullopt, false);
        samplers.push_back({{"input", input}, {"output", output}, {"interpolation", "LINEAR"}});
        channels.push_back({{"sampler", static_cast<int>(samplers.size()) - 1},
                            {"target", {{"node", node}, {"path", path}}}});
    };
    for (int s = 0; s < static_cast<int>(model.SubObjects.size()); ++s) {
        const SubObject& sub = model.Sub(s);
        std::vector<float> times, values;
        if (model.HasPANI) {
            for (const PosKey& k : AnimatedKeys(sub.Pos.Keys)) {
                times.push_back(static_cast<float>(k.Frame / kFramesPerSecond));
                const Vector3 p = Finite(Mirror(Add(sub.Offset, k.Position)));
                values.insert(values.end(), {p.X, p.Y, p.Z});
            }
            if (!times.empty()) sampler(times, values, "VEC3", s, "translation");
        }
        times.clear();
        values.clear();
        if (model.HasRANI && (sub.PropertyFlags & kPropFov) == 0) {
            for (const RotKey& k : AnimatedKeys(sub.Rot.Keys)) {
                times.push_back(static_cast<float>(k.Frame / kFramesPerSecond));
                const Quaternion q = QuaternionFromKeyMatrix(k.Matrix);
                for (const double e : q)
                    values.push_back(static_cast<float>(e));
            }
            if (!times.empty()) sampler(times, values, "VEC4", s, "rotation");
        }
    }
    if (channels.empty()) return nullptr;
    return json::array({{{"name", "Key frames"}, {"channels", channels}, {"samplers", samplers}}});
}

}  // namespace mw::gltf
