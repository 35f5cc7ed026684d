#include "convert/gltf_extras_writer.h"

#include "model/text_codec.h"

namespace mw {

using nlohmann::json;
using namespace gltf;

json ExtrasWriter::SubObjectExtras(const SubObject& sub) {
    json e{{"record", &sub - m_.SubObjects.data()},
           {"index", sub.Index},
           {"parent", sub.Parent},
           {"kept_vector_a", VectorJson(sub.KeptVectorA)},
           {"kept_float", FloatJson(sub.KeptFloat)},
           {"kept_vector_b", VectorJson(sub.KeptVectorB)},
           {"offset", VectorJson(sub.Offset)},
           {"radius", FloatJson(sub.Radius)},
           {"kept_int_a", sub.KeptIntA},
           {"kept_int_b", sub.KeptIntB},
           {"center", VectorJson(sub.Center)},
           {"kept_int_c", sub.KeptIntC},
           {"kept_int_d", sub.KeptIntD}};
    // Keys as numbers (another program keeps these, not the buffer views): a position key
    // as frame, x, y, z; a rotation key as frame, x, y, z, angle.
    json pos = json::array(), rot = json::array();
    for (const PosKey& k : sub.Pos.Keys) {
        pos.push_back(k.Frame);
        for (const json& v : VectorJson(k.Position))
            pos.push_back(v);
    }
    for (const RotKey& k : sub.Rot.Keys) {
        rot.push_back(k.Frame);
        for (const json& v : VectorJson(k.Axis))
            rot.push_back(v);
        rot.push_back(k.Angle);
    }
    e["position_keys"] = {
        {"first", sub.Pos.FirstFrame}, {"last", sub.Pos.LastFrame}, {"keys", std::move(pos)}};
    e["rotation_keys"] = {
        {"first", sub.Rot.FirstFrame}, {"last", sub.Rot.LastFrame}, {"keys", std::move(rot)}};
    e["vertices"] = Block(sub.Vertices);
    e["faces"] = FaceBlock(sub.Faces);
    e["corners"] = Block(sub.Corners);
    return e;
}

// The faces as records, written straight into the buffer.
json ExtrasWriter::FaceBlock(const std::vector<Face>& faces) {
    if (faces.empty()) return {{"empty", true}};
    gltf::BufferBuilder& b = buffers_;
    const std::size_t bytes = faces.size() * sizeof(FaceRecord);
    const std::size_t at = b.Allocate(bytes);
    for (std::size_t i = 0; i < faces.size(); ++i) {
        const Face& f = faces[i];
        const FaceRecord record{f.Normal, f.VertexCount, f.Textured,  f.TextureIndex,
                                f.Color,  f.FaceKeptA,   f.FaceKeptB, f.Primitive};
        b.Put(at + i * sizeof(FaceRecord), record);
    }
    return {{"buffer_view", b.ViewAt(at, bytes, std::nullopt)},
            {"check", BlockCheck(b.Bytes(at, bytes))}};
}

json ExtrasWriter::ModelExtras() const {
    json e{{"version", m_.Version},
           {"radius", FloatJson(m_.Header.Radius)},
           {"min", VectorJson(m_.Header.Min)},
           {"max", VectorJson(m_.Header.Max)},
           {"header_list", m_.HeaderList},
           {"pinf", Utf8From1252(m_.PinfText)},
           {"frame_min", m_.FrameMin},
           {"frame_max", m_.FrameMax},
           {"has_pani", m_.HasPANI},
           {"has_rani", m_.HasRANI},
           {"sub_objects", m_.SubObjects.size()}};
    // Only objects, texts, numbers and flat lists of numbers: Blender keeps those as they
    // are (a list of objects or of lists it turns into one text). Lists of records are
    // objects by index, and points flat lists of parent, position and normal.
    json textures = json::object();
    for (std::size_t t = 0; t < m_.Textures.size(); ++t) {
        textures[std::to_string(t)] = {{"name", Utf8From1252(m_.Textures[t].Name)},
                                       {"game_name", Utf8From1252(m_.Textures[t].GameName)}};
    }
    e["textures"] = std::move(textures);
    json points = json::object();
    for (const PointType type : kPointTypes) {
        json list = json::array();
        for (const ModelPoint& p : m_.Points(type)) {
            list.push_back(p.Parent);
            for (const Vector3 v : {p.Position, p.Normal}) {
                for (const json& f : VectorJson(v))
                    list.push_back(f);
            }
        }
        points[PointTag(type)] = std::move(list);
    }
    e["points"] = std::move(points);
    if (m_.Special) {
        e["special"] = {{"name", Utf8From1252(m_.Special->Name)},
                        {"properties", Utf8From1252(m_.Special->Properties)},
                        {"position", VectorJson(m_.Special->Position)},
                        {"radius", FloatJson(m_.Special->Radius)}};
    }
    json batteries = json::object();
    for (std::size_t b = 0; b < m_.Batteries.size(); ++b) {
        batteries[std::to_string(b)] = {{"guns", m_.Batteries[b].GunPoints},
                                        {"turrets", m_.Batteries[b].Turrets}};
    }
    e["batteries"] = std::move(batteries);
    e["battery_count"] = m_.Batteries.size();
    e["texture_count"] = m_.Textures.size();
    return e;
}

}  // namespace mw
