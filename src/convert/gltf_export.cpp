#include "convert/gltf_export.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <map>

#include "convert/gltf_animation_writer.h"
#include "convert/gltf_buffer.h"
#include "convert/gltf_common.h"
#include "convert/gltf_extras_writer.h"
#include "convert/gltf_material_writer.h"
#include "model/file_io.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "model/text_codec.h"

namespace mw {
namespace {

using nlohmann::json;
using namespace gltf;

static_assert(std::endian::native == std::endian::little, "buffers are written as stored");

// Normals shorter than this are taken as none.
constexpr float kLeastNormal = 1e-20f;

json QuaternionJson(const Quaternion& q) {
    return json::array({q[0], q[1], q[2], q[3]});
}

struct Output {
    json doc;
    BufferBuilder buffers;
    std::vector<std::pair<std::string, std::vector<std::uint8_t>>> pictures;  // beside a .gltf
};

class Exporter {
  public:
    Exporter(const ModelData& model, const TexturePictures& pictures, bool embedPictures)
        : m_(model), pictures_(pictures), embed_(embedPictures) {}

    Output Run() {
        json& doc = out_.doc;
        doc["asset"] = {{"version", "2.0"}, {"generator", "Meshwright"}};
        for (const char* list : {"nodes", "materials"})
            doc[list] = json::array();
        // Room in front of the buffer for the header and the JSON of a .glb: its text is
        // a small fraction of the buffer.
        const std::size_t estimate = BufferEstimate();
        out_.buffers.Reserve(estimate, embed_ ? (1 << 16) + estimate / 8 : 0);
        materials_.Write();
        const int n = static_cast<int>(m_.SubObjects.size());
        for (int s = 0; s < n; ++s)
            doc["nodes"].push_back(SubObjectNode(s));
        Hierarchy();
        Points();
        if (json animations = AnimationJson(m_, out_.buffers); !animations.is_null())
            out_.doc["animations"] = std::move(animations);
        doc["scenes"] = json::array({{{"name", "Model"}, {"nodes", roots_}}});
        // The model's own fields go with the first sub-object's node: Blender keeps a node's
        // extras as they are, but writes a scene's back as text of its own.
        doc["nodes"][0]["extras"][kExtrasKey]["model"] = extras_.ModelExtras();
        doc["scene"] = 0;
        for (const char* list : {"materials"}) {
            if (doc[list].empty()) doc.erase(list);
        }
        return std::move(out_);
    }

  private:
    // About the size of the binary buffer, so that it grows once or not at all.
    std::size_t BufferEstimate() const {
        std::size_t bytes = 1 << 16;
        for (const SubObject& sub : m_.SubObjects) {
            // Per corner position, normal, texture place, colour and an index or two; the
            // records kept whole.
            bytes += sub.Corners.size() * (48 + 12 + sizeof(FaceVertex)) +
                     sub.Vertices.size() * sizeof(Vertex) + sub.Faces.size() * sizeof(FaceRecord);
        }
        return bytes;
    }

    json SubObjectNode(int s) {
        const SubObject& sub = m_.Sub(s);
        json node{{"name", Utf8From1252(sub.Name)}};
        if (sub.Offset != Vector3{}) node["translation"] = VectorJson(Finite(Mirror(sub.Offset)));
        node["extras"]["pof_properties"] = Utf8From1252(sub.Properties);
        json extras = extras_.SubObjectExtras(sub);
        if (const auto mesh = Mesh(sub, extras)) node["mesh"] = *mesh;
        node["extras"][kExtrasKey] = std::move(extras);
        return node;
    }

    // The faces as one primitive per material, each corner its own glTF vertex, written
    // straight into the buffer.
    std::optional<int> Mesh(const SubObject& sub, json& extras) {
        std::map<int, std::vector<std::size_t>> groups;  // faces by material, in material order
        std::vector<std::size_t> firstCorner(sub.Faces.size());
        std::size_t corner = 0;
        for (std::size_t f = 0; f < sub.Faces.size(); ++f) {
            const Face& face = sub.Faces[f];
            const auto count = static_cast<std::size_t>(std::max(face.VertexCount, 0));
            firstCorner[f] = corner;
            corner += count;
            if (count >= 3 && corner <= sub.Corners.size())
                groups[materials_.MaterialOf(face)].push_back(f);
        }
        if (groups.empty()) return std::nullopt;
        // Each vertex's normal mirrored and of unit length, once; a face's own normal stands
        // in where the vertex has none.
        std::vector<Vector3> unitNormals(sub.Vertices.size());
        std::vector<std::uint8_t> hasNormal(sub.Vertices.size());
        std::vector<Vector3> places(sub.Vertices.size());
        for (std::size_t i = 0; i < sub.Vertices.size(); ++i) {
            unitNormals[i] = UnitOr(Mirror(sub.Vertices[i].Normal), {}, kLeastNormal);
            hasNormal[i] = unitNormals[i] != Vector3{};
            places[i] = Finite(Mirror(sub.Vertices[i].Position));
        }
        BufferBuilder& b = out_.buffers;
        std::string primitives;
        Fingerprint print;
        for (const auto& [material, faces] : groups) {
            std::size_t vertices = 0, triangles = 0;
            for (const std::size_t f : faces) {
                vertices += static_cast<std::size_t>(sub.Faces[f].VertexCount);
                triangles += static_cast<std::size_t>(sub.Faces[f].VertexCount) - 2;
            }
            const bool coloured = material == materials_.VertexColoured();
            const std::size_t positions = b.Allocate(12 * vertices);
            const std::size_t normals = b.Allocate(12 * vertices);
            const std::size_t uvs = b.Allocate(8 * vertices);
            const std::size_t colours = coloured ? b.Allocate(12 * vertices) : 0;
            const std::size_t indices = b.Allocate(12 * triangles);
            std::array<float, 3> least{}, most{};
            std::uint32_t v = 0, t = 0;
            std::uint8_t* const out = b.Data();  // nothing is allocated until the loop ends
            for (const std::size_t f : faces) {
                const Face& face = sub.Faces[f];
                const auto count = static_cast<std::uint32_t>(face.VertexCount);
                const Vector3 faceNormal =
                    UnitOr(Mirror(face.Normal), {0.0f, 1.0f, 0.0f}, kLeastNormal);
                const std::array<float, 3> colour{LinearFromByte(face.Color[0]),
                                                  LinearFromByte(face.Color[1]),
                                                  LinearFromByte(face.Color[2])};
                for (std::uint32_t c = 0; c < count; ++c, ++v) {
                    const FaceVertex& fv = sub.Corners[firstCorner[f] + c];
                    const auto vi = static_cast<std::size_t>(fv.VertexIndex);
                    const Vector3& p = places[vi];
                    const std::array<float, 3> place{p.X, p.Y, p.Z};
                    if (v == 0) least = most = place;
                    for (std::size_t k = 0; k < 3; ++k) {
                        least[k] = std::min(least[k], place[k]);
                        most[k] = std::max(most[k], place[k]);
                    }
                    const Vector3& n = hasNormal[vi] != 0 ? unitNormals[vi] : faceNormal;
                    const std::array<float, 2> uv{FiniteOr0(fv.U), FiniteOr0(fv.V)};
                    std::memcpy(out + positions + 12 * v, &p, 12);
                    std::memcpy(out + normals + 12 * v, &n, 12);
                    std::memcpy(out + uvs + 8 * v, uv.data(), 8);
                    if (coloured) std::memcpy(out + colours + 12 * v, colour.data(), 12);
                }
                // Mirrored, a face turns the other way round: the corners go in reverse.
                const std::uint32_t base = v - count;
                for (std::uint32_t i = 1; i + 1 < count; ++i, ++t) {
                    const std::array<std::uint32_t, 3> triangle{base, base + i + 1, base + i};
                    std::memcpy(out + indices + 12 * t, triangle.data(), 12);
                }
            }
            const int n = static_cast<int>(vertices);
            const auto accessor = [&](std::size_t at, std::size_t bytes, const char* type,
                                      std::span<const float> lo = {},
                                      std::span<const float> hi = {}) {
                return std::to_string(
                    b.AccessorOf(b.ViewAt(at, bytes, kArrayBuffer), kFloat, type, n, lo, hi));
            };
            // One after another, so that the accessors are numbered in this order.
            std::string attributes =
                "{\"POSITION\":" + accessor(positions, 12 * vertices, "VEC3", least, most);
            attributes += ",\"NORMAL\":" + accessor(normals, 12 * vertices, "VEC3");
            attributes += ",\"TEXCOORD_0\":" + accessor(uvs, 8 * vertices, "VEC2");
            if (coloured) attributes += ",\"COLOR_0\":" + accessor(colours, 12 * vertices, "VEC3");
            const int corners = static_cast<int>(3 * triangles);
            const int index = b.AccessorOf(b.ViewAt(indices, 12 * triangles, kElementArrayBuffer),
                                           kUnsignedInt, "SCALAR", corners);
            if (!primitives.empty()) primitives += ',';
            primitives += "{\"attributes\":" + attributes +
                          "},\"indices\":" + std::to_string(index) +
                          ",\"material\":" + std::to_string(material) + '}';
            print.Add(b.Bytes(positions, 12 * vertices));
            print.Add(b.Bytes(uvs, 8 * vertices));
            print.Add(b.Bytes(indices, 12 * triangles));
        }
        extras["mesh_fingerprint"] = print.Text();
        return b.AddMesh("{\"name\":" + json(Utf8From1252(sub.Name)).dump() + ",\"primitives\":[" +
                         primitives + "]}");
    }

    // Children under their parents where the parents form a tree; the rest at the top.
    void Hierarchy() {
        const int n = static_cast<int>(m_.SubObjects.size());
        json& nodes = out_.doc["nodes"];
        for (int s = 0; s < n; ++s) {
            if (ReachesRoot(s)) {
                const int parent = m_.Sub(s).Parent;
                if (parent == -1) {
                    roots_.push_back(s);
                } else {
                    nodes[static_cast<std::size_t>(parent)]["children"].push_back(s);
                }
            } else {
                roots_.push_back(s);
            }
        }
    }

    bool ReachesRoot(int s) const {
        const int n = static_cast<int>(m_.SubObjects.size());
        for (int steps = 0; steps <= n; ++steps) {
            const int parent = m_.Sub(s).Parent;
            if (parent == -1) return true;
            if (!m_.IsRecord(parent) || parent == s) return false;
            s = parent;
        }
        return false;
    }

    void Points() {
        json& nodes = out_.doc["nodes"];
        for (const PointType type : {PointType::GPNT, PointType::ATCH, PointType::GRND}) {
            const auto& list = m_.Points(type);
            for (std::size_t i = 0; i < list.size(); ++i) {
                const ModelPoint& p = list[i];
                json node{{"name", PointNodeName(type, static_cast<int>(i))}};
                node["translation"] = VectorJson(Finite(Mirror(p.Position)));
                node["rotation"] = QuaternionJson(PointRotation(m_, type, static_cast<int>(i)));
                nodes.push_back(std::move(node));
                const int index = static_cast<int>(nodes.size()) - 1;
                if (m_.IsRecord(p.Parent)) {
                    nodes[static_cast<std::size_t>(p.Parent)]["children"].push_back(index);
                } else {
                    roots_.push_back(index);
                }
            }
        }
    }

    const ModelData& m_;
    const TexturePictures& pictures_;
    bool embed_;
    Output out_;
    ExtrasWriter extras_{m_, out_.buffers};
    MaterialWriter materials_{m_, pictures_, embed_, out_.doc, out_.buffers, out_.pictures};
    json roots_ = json::array();
};

// A model whose save slots are not one record each (merged or removed sub-objects) is
// exported as it would be saved.
std::optional<ModelData> AsSaved(const ModelData& model) {
    bool plain = model.MergeTable.size() == model.SubObjects.size();
    for (std::size_t c = 0; plain && c < model.MergeTable.size(); ++c)
        plain = model.MergeTable[c].size() == 1;
    if (plain) return std::nullopt;
    ModelData copy = model;
    ModelData saved;
    if (readOOF(saved, WriteOOF(copy)) != ResultCode::Success) return std::nullopt;
    return saved;
}

Output Export(const ModelData& model, const TexturePictures& pictures, bool embed) {
    if (const auto saved = AsSaved(model)) return Exporter(*saved, pictures, embed).Run();
    return Exporter(model, pictures, embed).Run();
}

void Append32(std::vector<std::uint8_t>& out, std::uint32_t v) {
    for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

}  // namespace

GlbFile ExportGLB(const ModelData& model, const TexturePictures& pictures) {
    Output o = Export(model, pictures, true);
    const std::size_t binLength = (o.buffers.bin().size() + 3) / 4 * 4;
    o.doc["buffers"] = json::array({{{"byteLength", o.buffers.bin().size()}}});
    std::string text = o.buffers.Dump(o.doc, -1);
    while (text.size() % 4 != 0)
        text += ' ';
    // The file's header, the JSON chunk and the binary chunk's header go in front of the
    // buffer.
    std::vector<std::uint8_t> head;
    head.reserve(28 + text.size());
    Append32(head, 0x46546C67);  // "glTF"
    Append32(head, 2);
    Append32(head, static_cast<std::uint32_t>(28 + text.size() + binLength));
    Append32(head, static_cast<std::uint32_t>(text.size()));
    Append32(head, 0x4E4F534A);  // "JSON"
    head.insert(head.end(), text.begin(), text.end());
    Append32(head, static_cast<std::uint32_t>(binLength));
    Append32(head, 0x004E4942);  // "BIN"
    auto whole = o.buffers.TakeWithHead(head);
    return {std::move(whole.storage), whole.first, whole.size};
}

std::string ExportGLTF(const ModelData& model, const TexturePictures& pictures,
                       const std::filesystem::path& out) {
    const std::string ext = LowerCase1252(out.extension().string());
    if (ext == ".glb") return WriteFileReplacing(out, ExportGLB(model, pictures).bytes());
    if (ext != ".gltf") return "The file name must end in .glb or .gltf: " + out.string();
    Output o = Export(model, pictures, false);
    const std::filesystem::path folder = out.parent_path();
    const std::string binName = out.stem().string() + ".bin";
    const std::span<const std::uint8_t> bin = o.buffers.bin();
    o.doc["buffers"] = json::array({{{"byteLength", bin.size()}, {"uri", binName}}});
    if (std::string error = WriteFileReplacing(folder / binName, bin); !error.empty()) return error;
    for (const auto& [name, bytes] : o.pictures) {
        if (std::string error = WriteFileReplacing(folder / name, bytes); !error.empty())
            return error;
    }
    const std::string text = o.buffers.Dump(o.doc, 1);
    return WriteFileReplacing(out,
                              {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

}  // namespace mw
