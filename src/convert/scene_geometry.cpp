// The builder's geometry: the faces and vertices of a node's meshes, the texture or colour of
// a material, triangles joined back into polygons.
#include "convert/scene_model.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "convert/gltf_common.h"
#include "convert/polygon_merge.h"
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

}  // namespace mw
