#include "sample_model.h"

#include "model/geometry.h"
#include "model/properties.h"

namespace mw {
namespace {

struct Colour {
    std::uint8_t r, g, b;
};

// A box tapered along Z: the back face (z = -depth) has half-size `back`, the front
// face (z = +depth) half-size `front`. Faces are quads, wound the same way throughout.
void AddTaperedBox(SubObject& sub, Vector3 centre, float backX, float backY, float frontX,
                   float frontY, float depth, int texture, Colour colour) {
    const int base = sub.VertexCount();
    const float xs[2] = {-1.0f, 1.0f};
    for (int corner = 0; corner < 8; ++corner) {
        const bool front = corner & 4;
        const float hx = front ? frontX : backX;
        const float hy = front ? frontY : backY;
        Vertex v;
        v.Position = {centre.X + xs[corner & 1] * hx, centre.Y + xs[(corner >> 1) & 1] * hy,
                      centre.Z + (front ? depth : -depth)};
        sub.Vertices.push_back(v);
    }
    struct Side {
        int c[4];
        Vector3 normal;
    };
    const Side sides[6] = {
        {{0, 2, 3, 1}, {0, 0, -1}}, {{4, 5, 7, 6}, {0, 0, 1}},  {{0, 1, 5, 4}, {0, -1, 0}},
        {{2, 6, 7, 3}, {0, 1, 0}},  {{0, 4, 6, 2}, {-1, 0, 0}}, {{1, 3, 7, 5}, {1, 0, 0}},
    };
    const float us[4] = {0.0f, 1.0f, 1.0f, 0.0f};
    const float vs[4] = {0.0f, 0.0f, 1.0f, 1.0f};
    for (const Side& side : sides) {
        Face f;
        f.Normal = side.normal;
        f.VertexCount = 4;
        f.Primitive = PrimitiveFor(4);
        f.Textured = texture >= 0 ? 1 : 0;
        f.TextureIndex = texture;
        f.Color = texture >= 0 ? std::array<std::uint8_t, 4>{255, 255, 255, 255}
                               : std::array<std::uint8_t, 4>{colour.r, colour.g, colour.b, 255};
        for (int i = 0; i < 4; ++i)
            sub.Corners.push_back({base + side.c[i], us[i], vs[i]});
        sub.Faces.push_back(f);
    }
}

// Keeps only a box's back face (the game draws a glow from a sub-object of one face).
void KeepBackFace(SubObject& sub) {
    sub.Faces.resize(1);
    sub.Corners.resize(4);
    sub.Vertices.resize(4);
}

SubObject& AddPart(ModelData& m, const char* name, int parent, Vector3 offset,
                   const char* properties) {
    SubObject sub;
    sub.Index = static_cast<int>(m.SubObjects.size());
    sub.Parent = parent;
    sub.Name = name;
    sub.Offset = offset;
    sub.Properties = properties;
    ParseProperties(sub);
    m.SubObjects.push_back(sub);
    return m.SubObjects.back();
}

void FinishPart(SubObject& sub) {
    for (const Vertex& v : sub.Vertices) {
        sub.BoxMin = ComponentMin(sub.BoxMin, v.Position);
        sub.BoxMax = ComponentMax(sub.BoxMax, v.Position);
        if (Length(v.Position) > sub.Radius) sub.Radius = Length(v.Position);
    }
    sub.Center = Midpoint(sub.BoxMin, sub.BoxMax);
}

ModelPoint Point(int parent, Vector3 position, Vector3 normal) {
    return {parent, position, normal};
}

}  // namespace

ModelData BuildSampleModel() {
    ModelData m;
    m.Textures = {{"", "ship_hull", "ship_hull"},
                  {"", "ship_wing", "ship_wing"},
                  {"", "ship_turret", "ship_turret"}};
    const Colour grey{128, 128, 140}, orange{255, 140, 40}, dark{40, 40, 48};

    AddTaperedBox(AddPart(m, "hull", -1, {0, 0, 0}, ""), {0, 0, 0}, 2.0f, 1.0f, 0.8f, 0.5f, 4.0f, 0,
                  grey);
    AddTaperedBox(AddPart(m, "wing_left", 0, {-3.0f, -0.2f, -1.0f}, ""), {0, 0, 0}, 1.5f, 0.2f,
                  0.6f, 0.15f, 1.5f, 1, grey);
    AddTaperedBox(AddPart(m, "wing_right", 0, {3.0f, -0.2f, -1.0f}, ""), {0, 0, 0}, 1.5f, 0.2f,
                  0.6f, 0.15f, 1.5f, 1, grey);
    AddTaperedBox(AddPart(m, "turret", 0, {0, 1.4f, 0.5f}, "$fov=90,3,1"), {0, 0, 0}, 0.7f, 0.4f,
                  0.5f, 0.4f, 0.8f, 2, grey);
    AddTaperedBox(AddPart(m, "radar", 3, {0, 0.7f, -0.4f}, "$rotate=2"), {0, 0.1f, 0}, 0.6f, 0.05f,
                  0.6f, 0.05f, 0.1f, -1, dark);
    SubObject& thruster = AddPart(m, "thruster", 0, {0, 0, -4.3f}, "$glow=1,0.55,0.1,1.5");
    AddTaperedBox(thruster, {0, 0, 0}, 0.5f, 0.4f, 0.6f, 0.5f, 0.3f, -1, orange);
    KeepBackFace(thruster);
    AddTaperedBox(AddPart(m, "hatch", 0, {0, 1.0f, 2.2f}, ""), {0, 0, 0}, 0.4f, 0.05f, 0.4f, 0.05f,
                  0.5f, -1, dark);
    for (SubObject& sub : m.SubObjects)
        FinishPart(sub);

    // The turret turns a quarter left and back; the hatch slides up and down.
    RotKey r0{0, {0, 1, 0}, 0, IdentityMatrix()};
    RotKey r1{10, {0, 1, 0}, 16384, IdentityMatrix()};
    RotKey r2{20, {0, -1, 0}, 16384, IdentityMatrix()};
    m.Sub(3).Rot = {0, 20, {r0, r1, r2}};
    // The radar dish spins about its own Y axis ("$rotate=2": one turn in two seconds).
    m.Sub(4).Rot = {
        0, 10, {{0, {0, 1, 0}, 1, IdentityMatrix()}, {10, {0, 1, 0}, 1, IdentityMatrix()}}};
    m.Sub(6).Pos = {0, 20, {{0, {0, 1.0f, 2.2f}}, {10, {0, 1.5f, 2.2f}}, {20, {0, 1.0f, 2.2f}}}};
    m.HasPANI = true;
    m.HasRANI = true;
    m.FrameMin = 0;
    m.FrameMax = 20;

    m.GunPoints = {Point(1, {-1.0f, 0, 1.2f}, {0, 0, 1}), Point(2, {1.0f, 0, 1.2f}, {0, 0, 1}),
                   Point(3, {0, 0, 0.8f}, {0, 0, 1})};
    m.AttachPoints = {Point(0, {0, -1.0f, 0}, {0, -1, 0})};
    m.AttachNormals = {Point(0, {0, -1.0f, 0.5f}, {0, 0, 1})};
    m.GroundPoints = {Point(0, {0, -1.0f, 3.0f}, {0, -1, 0}), Point(1, {0, -0.2f, 0}, {0, -1, 0}),
                      Point(2, {0, -0.2f, 0}, {0, -1, 0})};
    m.Batteries = {{{0, 1}, {}}, {{2}, {3}}};

    RebuildSaveOrder(m);
    for (int s = 0; s < static_cast<int>(m.SubObjects.size()); ++s)
        CalcRotMatrix(m, s);
    RecalcVertexNormals(m);
    CreatePushPop(m);
    MoveSOBJ(m);
    m.Version = 2300;
    return m;
}

}  // namespace mw
