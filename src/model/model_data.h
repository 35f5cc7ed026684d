// The records of the one open model and the model-wide values that go with it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "math/vector.h"

namespace mw {

// Limits of the model's lists.
inline constexpr int kMaxGunPoints = 64;
inline constexpr int kMaxAttachPoints = 10;
inline constexpr int kMaxAttachNormals = 10;
inline constexpr int kMaxGroundPoints = 10;
inline constexpr int kMaxBatteries = 64;
inline constexpr int kMaxBatteryEntries = 8;
inline constexpr int kMaxKeys = 1000;
inline constexpr int kMaxColumnEntries = 100;

// Face primitives: the OpenGL mode numbers for triangles, quads and polygons.
inline constexpr std::int32_t kPrimTriangles = 4;
inline constexpr std::int32_t kPrimQuads = 7;
inline constexpr std::int32_t kPrimPolygon = 9;

std::int32_t PrimitiveFor(std::int32_t cornerCount);

struct ModelHeader {
    float Radius = 0.0f;
    Vector3 Min;
    Vector3 Max;
};

struct Vertex {
    Vector3 Position;
    Vector3 Normal;
    float Alpha = 1.0f;
};

struct FaceVertex {
    std::int32_t VertexIndex = 0;
    float U = 0.0f;
    float V = 0.0f;
};

struct Face {
    Vector3 Normal;
    std::int32_t VertexCount = 0;
    std::int32_t Textured = 0;
    std::int32_t TextureIndex = -1;
    std::array<std::uint8_t, 4> Color{255, 255, 255, 255};
    std::uint32_t FaceKeptA = 0;
    std::uint32_t FaceKeptB = 0;
    std::int32_t Primitive = kPrimPolygon;
};

struct PosKey {
    std::int32_t Frame = 0;
    Vector3 Position;
};

struct RotKey {
    std::int32_t Frame = 0;
    Vector3 Axis;
    std::int32_t Angle = 0;
    Matrix4 Matrix = IdentityMatrix();  // orientation reached at this key; not stored in files
};

// One key track of a sub-object; KeyCount is Keys.size().
template <typename Key>
struct KeyTrack {
    std::int32_t FirstFrame = 0;
    std::int32_t LastFrame = 0;
    std::vector<Key> Keys;

    int KeyCount() const { return static_cast<int>(Keys.size()); }
};

// Bits of SubObject::PropertyFlags, derived from the property string.
enum PropertyFlag : std::uint32_t {
    kPropRotate = 0x1,
    kPropFov = 0x2,
    kPropShell = 0x4,
    kPropFrontFace = 0x8,
    kPropMonitor01 = 0x10,  // monitors 01..08 take the eight bits from here up
    kPropFacing = 0x1000,
    kPropViewer = 0x2000,
    kPropLayer = 0x4000,
    kPropGlow = 0x200000,
    kPropCustom = 0x400000,
    kPropJitter = 0x1000000,
};

struct SubObject {
    std::int32_t Index = 0;
    std::int32_t Parent = -1;
    Vector3 KeptVectorA;
    float KeptFloat = 0.0f;
    Vector3 KeptVectorB;
    Vector3 Offset;
    float Radius = 0.0f;
    std::int32_t KeptIntA = 0;
    std::int32_t KeptIntB = 0;
    Vector3 Center;
    std::string Name;        // bytes in Windows-1252
    std::string Properties;  // bytes in Windows-1252
    std::int32_t KeptIntC = 0;
    std::int32_t KeptIntD = 0;

    std::vector<Vertex> Vertices;
    std::vector<Face> Faces;
    std::vector<FaceVertex> Corners;  // all faces' corners in face order

    // Derived on load; not stored in files.
    Vector3 BoxMin{90000.0f, 90000.0f, 90000.0f};
    Vector3 BoxMax{-90000.0f, -90000.0f, -90000.0f};
    bool HasAlpha = false;
    std::uint32_t PropertyFlags = 0;
    float RotateSpeed = 0.0f;
    std::array<float, 3> GlowColor{};
    float GlowSize = 0.0f;
    std::array<float, 3> FovValues{};

    KeyTrack<PosKey> Pos;
    KeyTrack<RotKey> Rot;

    int VertexCount() const { return static_cast<int>(Vertices.size()); }
    int FaceCount() const { return static_cast<int>(Faces.size()); }
    int CornerCount() const { return static_cast<int>(Corners.size()); }
};

struct Texture {
    std::string GameName;
    std::string Name;
    std::string LoadedName;
};

struct ModelPoint {
    std::int32_t Parent = 0;
    Vector3 Position;
    Vector3 Normal;
};

struct SpecialPoint {
    std::string Name;
    std::string Properties;
    Vector3 Position;
    float Radius = 0.0f;

    bool operator==(const SpecialPoint&) const = default;
};

struct WeaponBattery {
    std::vector<std::int32_t> GunPoints;  // at most 8 gun point indices
    std::vector<std::int32_t> Turrets;    // at most 8 sub-object indices
};

// The four point lists, in the order the tree lists them.
enum class PointType { ATCH, NATH, GRND, GPNT };
inline constexpr std::array<PointType, 4> kPointTypes{PointType::ATCH, PointType::NATH,
                                                      PointType::GRND, PointType::GPNT};
const char* PointTag(PointType type);
std::optional<PointType> PointTypeFromTag(std::string_view tag);
int PointLimit(PointType type);

struct ModelData {
    std::int32_t Version = 0;  // of the last file read or written
    std::vector<Texture> Textures;
    ModelHeader Header;
    std::vector<std::int32_t> HeaderList;  // as read; never written
    std::vector<SubObject> SubObjects;     // records are never removed or renumbered

    // One column per save slot; entry 0 heads the slot, later entries are merged members.
    // The number of columns is the model's live sub-object count.
    std::vector<std::vector<std::int32_t>> MergeTable;

    std::vector<ModelPoint> GunPoints;
    std::vector<ModelPoint> AttachPoints;
    std::vector<ModelPoint> AttachNormals;
    std::vector<ModelPoint> GroundPoints;
    std::optional<SpecialPoint> Special;
    // The special point while it is switched off in the editor; not stored in files.
    std::optional<SpecialPoint> SpecialParked;
    std::vector<WeaponBattery> Batteries;

    std::string PinfText;
    std::int32_t FrameMin = 0;
    std::int32_t FrameMax = 1;
    bool HasPANI = false;
    bool HasRANI = false;

    // Draw-order marks per sub-object record, rebuilt by CreatePushPop.
    std::vector<bool> PushFlags;
    std::vector<bool> PopFlags;

    int SubObjectCount() const { return static_cast<int>(MergeTable.size()); }
    int Head(int slot) const { return MergeTable[static_cast<std::size_t>(slot)][0]; }
    SubObject& Sub(int index) { return SubObjects[static_cast<std::size_t>(index)]; }
    const SubObject& Sub(int index) const { return SubObjects[static_cast<std::size_t>(index)]; }
    bool IsRecord(int index) const {
        return index >= 0 && index < static_cast<int>(SubObjects.size());
    }

    std::vector<ModelPoint>& Points(PointType type);
    const std::vector<ModelPoint>& Points(PointType type) const;
};

// Back to the no-model state.
void ClearModel(ModelData& model);

// Rebuilds the save slots after a read as a depth-first walk of the hierarchy: roots in
// ascending index order, each followed by its descendants in pre-order, one sub-object per
// column. Sub-objects that no root reaches get no column.
void RebuildSaveOrder(ModelData& model);

// The text the writer puts into PINF.
const std::string& WriterInfo();

}  // namespace mw
