// What the glTF writer and the model importer share: the mirror between the game's
// left-handed space and glTF's right-handed one, the orientation of point nodes, exact
// numbers inside JSON extras, and the fingerprint that tells an untouched
// exported mesh from an edited one.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "math/vector.h"
#include "model/model_data.h"

namespace mw::gltf {

// The key of the extras that carry what glTF has no place for.
inline constexpr const char* kExtrasKey = "descent3";
// Frames per second of key frames in glTF animations.
inline constexpr double kFramesPerSecond = 30.0;

// glTF holds finite numbers only; what is not (a damaged model's) is shown as 0 there and
// kept exactly in the extras.
inline float FiniteOr0(float f) {
    return std::isfinite(f) ? f : 0.0f;
}
inline Vector3 Finite(Vector3 v) {
    return {FiniteOr0(v.X), FiniteOr0(v.Y), FiniteOr0(v.Z)};
}

// x becomes -x: positions, offsets, normals and directions both ways.
inline Vector3 Mirror(Vector3 v) {
    return {-v.X, v.Y, v.Z};
}

// Mirror for values read from other programs: the same, but 0 stays 0 (not -0).
inline Vector3 Unmirror(Vector3 v) {
    return {0.0f - v.X, v.Y, v.Z};
}

// v made of unit length, or `fallback` when its length is not finite or not above `least`.
inline Vector3 UnitOr(Vector3 v, Vector3 fallback, float least = 0.0f) {
    const float length = Length(v);
    if (!(length > least) || !std::isfinite(length)) return fallback;
    return {v.X / length, v.Y / length, v.Z / length};
}

using Quaternion = std::array<double, 4>;  // x, y, z, w as glTF stores them

// The rotation of a 3x3 matrix given by its columns.
Quaternion QuaternionFromColumns(const std::array<Vector3, 3>& columns);
// The rotation as columns of a 3x3 matrix.
std::array<Vector3, 3> ColumnsFromQuaternion(const Quaternion& q);
// The orientation a rotation key reaches, in glTF space.
Quaternion QuaternionFromKeyMatrix(const Matrix4& m);

// The orientation of a point node in glTF space: its local +Y along `direction`, and, when
// given, its local -Z along `up` (made perpendicular to the direction). Both in glTF space.
Quaternion PointOrientation(Vector3 direction, std::optional<Vector3> up);

// The orientation of the node of point `index` of list `type` (gun, attach or ground).
Quaternion PointRotation(const ModelData& model, PointType type, int index);

// A face as the extras keep it, in a buffer view of its own; 40 bytes.
struct FaceRecord {
    Vector3 Normal;
    std::int32_t VertexCount, Textured, TextureIndex;
    std::array<std::uint8_t, 4> Color;
    std::uint32_t KeptA, KeptB;
    std::int32_t Primitive;
};
static_assert(sizeof(FaceRecord) == 40 && sizeof(Vertex) == 28 && sizeof(FaceVertex) == 12);

// The name of a point node ("Gun_3", "Attach_0", "Ground_1"); empty for attach normals,
// which live in their attach point's node.
std::string PointNodeName(PointType type, int index);
// The point list and index a node name stands for: "Gun_0", "gun_0.001", "ATTACH_2".
struct PointName {
    PointType Type;
    int Index;
};
std::optional<PointName> ParsePointNodeName(std::string_view name);

// glTF colours are linear; face colours are bytes meant as shown (sRGB).
float LinearFromByte(std::uint8_t c);
std::uint8_t ByteFromLinear(float linear);

// Members of JSON read without trusting their types (another program may have rewritten
// them: Blender, for one, writes true as 1). A member that is missing or of another type
// gives the fallback.
const nlohmann::json& Member(const nlohmann::json& object, const char* key);
int IntFrom(const nlohmann::json& j, int fallback = 0);
bool BoolFrom(const nlohmann::json& j, bool fallback = false);
std::string StringFrom(const nlohmann::json& j);
// A text member in the game's code page (Windows-1252).
std::string Text1252(const nlohmann::json& object, const char* key);

// Floats inside JSON, bit-exact: a finite value as a number, any other as "0x" and its bits.
nlohmann::json FloatJson(float f);
float FloatFrom(const nlohmann::json& j);
nlohmann::json VectorJson(Vector3 v);
Vector3 VectorFrom(const nlohmann::json& j);

// A hash over a mesh's vertex data as written, so that an untouched mesh can be told from
// one an editor has changed.
class Fingerprint {
  public:
    void Add(std::span<const std::uint8_t> bytes);
    template <typename T>
    void AddValues(std::span<const T> values) {
        Add({reinterpret_cast<const std::uint8_t*>(values.data()), values.size_bytes()});
    }
    std::string Text() const;

  private:
    std::array<std::uint64_t, 4> lanes_{14695981039346656037ull, 1, 2, 3};
};

// What tells a block of records kept in a buffer view from any other bytes: its length and
// its first and last 256 bytes. (Nothing edits those bytes; the check only finds a view
// that another program renumbered.)
std::string BlockCheck(std::span<const std::uint8_t> bytes);

}  // namespace mw::gltf
