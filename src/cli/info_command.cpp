#include <iomanip>
#include <ostream>
#include <sstream>

#include "cli/cli.h"
#include "cli/json_writer.h"
#include "model/text_codec.h"

namespace mw {
namespace {

void PointJson(JsonWriter& j, const ModelPoint& p) {
    j.beginObject().field("parent", p.Parent).field("position", p.Position);
    j.field("normal", p.Normal).endObject();
}

void IntList(JsonWriter& j, const std::vector<std::int32_t>& list) {
    j.beginArray();
    for (std::int32_t v : list)
        j.value(v);
    j.endArray();
}

void GeometryJson(JsonWriter& j, const SubObject& sub) {
    j.key("vertex_list").beginArray();
    for (const Vertex& v : sub.Vertices) {
        j.beginObject().field("position", v.Position).field("normal", v.Normal);
        j.field("alpha", v.Alpha).endObject();
    }
    j.endArray();
    j.key("face_list").beginArray();
    std::size_t corner = 0;
    for (const Face& f : sub.Faces) {
        j.beginObject().field("normal", f.Normal).field("textured", f.Textured != 0);
        j.field("texture", f.TextureIndex);
        j.key("color").beginArray();
        for (std::uint8_t c : f.Color)
            j.value(static_cast<int>(c));
        j.endArray();
        j.key("corners").beginArray();
        for (int c = 0; c < f.VertexCount && corner < sub.Corners.size(); ++c, ++corner) {
            const FaceVertex& fv = sub.Corners[corner];
            j.beginObject().field("vertex", fv.VertexIndex).field("u", fv.U).field("v", fv.V);
            j.endObject();
        }
        j.endArray().endObject();
    }
    j.endArray();
}

void SubObjectJson(JsonWriter& j, const ModelData& model, int slot, bool geometry) {
    const auto& column = model.MergeTable[static_cast<std::size_t>(slot)];
    const SubObject& sub = model.Sub(column[0]);
    j.beginObject();
    j.field("slot", slot).field("index", sub.Index).field("name", Utf8From1252(sub.Name));
    j.field("parent", sub.Parent).field("offset", sub.Offset).field("radius", sub.Radius);
    j.field("center", sub.Center).field("properties", Utf8From1252(sub.Properties));
    j.field("flags", sub.PropertyFlags).field("rotate_speed", sub.RotateSpeed);
    j.key("glow").beginArray();
    for (float c : sub.GlowColor)
        j.value(c);
    j.value(sub.GlowSize).endArray();
    j.key("fov").beginArray();
    for (float f : sub.FovValues)
        j.value(f);
    j.endArray();
    j.field("vertices", sub.VertexCount()).field("faces", sub.FaceCount());
    j.field("corners", sub.CornerCount());
    j.field("box_min", sub.BoxMin).field("box_max", sub.BoxMax).field("has_alpha", sub.HasAlpha);
    j.key("merged");
    IntList(j, std::vector<std::int32_t>(column.begin() + 1, column.end()));
    j.key("pos_range").beginArray().value(sub.Pos.FirstFrame).value(sub.Pos.LastFrame).endArray();
    j.key("rot_range").beginArray().value(sub.Rot.FirstFrame).value(sub.Rot.LastFrame).endArray();
    j.key("pos_keys").beginArray();
    for (const PosKey& k : sub.Pos.Keys) {
        j.beginObject().field("frame", k.Frame).field("position", k.Position).endObject();
    }
    j.endArray();
    j.key("rot_keys").beginArray();
    for (const RotKey& k : sub.Rot.Keys) {
        j.beginObject().field("frame", k.Frame).field("axis", k.Axis).field("angle", k.Angle);
        j.endObject();
    }
    j.endArray();
    if (geometry) GeometryJson(j, sub);
    j.endObject();
}

std::string Vec(Vector3 v) {
    std::ostringstream s;
    s << "(" << v.X << ", " << v.Y << ", " << v.Z << ")";
    return s.str();
}

std::string Quoted(const std::string& bytes) {
    return "\"" + Utf8From1252(bytes) + "\"";
}

std::string List(const std::vector<std::int32_t>& list) {
    std::string s = "[";
    for (std::size_t i = 0; i < list.size(); ++i)
        s += (i ? ", " : "") + std::to_string(list[i]);
    return s + "]";
}

}  // namespace

std::string ModelJson(const ModelData& model, bool geometry) {
    JsonWriter j;
    j.beginObject();
    j.field("version", model.Version).field("radius", model.Header.Radius);
    j.field("min", model.Header.Min).field("max", model.Header.Max);
    j.field("frame_min", model.FrameMin).field("frame_max", model.FrameMax);
    j.field("has_pani", model.HasPANI).field("has_rani", model.HasRANI);
    j.key("textures").beginArray();
    for (const Texture& t : model.Textures) {
        j.beginObject().field("name", Utf8From1252(t.Name));
        j.field("game_name", Utf8From1252(t.GameName)).endObject();
    }
    j.endArray();
    j.key("subobjects").beginArray();
    for (int slot = 0; slot < model.SubObjectCount(); ++slot) {
        SubObjectJson(j, model, slot, geometry);
    }
    j.endArray();
    j.key("points").beginObject();
    for (PointType t : kPointTypes) {
        j.key(PointTag(t)).beginArray();
        for (const ModelPoint& p : model.Points(t))
            PointJson(j, p);
        j.endArray();
    }
    j.endObject();
    j.key("special_point");
    if (model.Special) {
        const SpecialPoint& sp = *model.Special;
        j.beginObject().field("name", Utf8From1252(sp.Name));
        j.field("properties", Utf8From1252(sp.Properties)).field("position", sp.Position);
        j.field("radius", sp.Radius).endObject();
    } else {
        j.null();
    }
    j.key("batteries").beginArray();
    for (const WeaponBattery& b : model.Batteries) {
        j.beginObject().key("gun_points");
        IntList(j, b.GunPoints);
        j.key("turrets");
        IntList(j, b.Turrets);
        j.endObject();
    }
    j.endArray();
    j.endObject();
    return j.str();
}

std::string ModelText(const ModelData& model) {
    std::ostringstream s;
    s << "OOF version " << model.Version << ", radius " << model.Header.Radius << ", box "
      << Vec(model.Header.Min) << " to " << Vec(model.Header.Max) << "\n";
    s << "Frames " << model.FrameMin << " to " << model.FrameMax
      << (model.HasPANI ? ", position keys" : "") << (model.HasRANI ? ", rotation keys" : "")
      << "\n";
    s << "Textures: " << model.Textures.size() << "\n";
    for (std::size_t i = 0; i < model.Textures.size(); ++i) {
        s << "  " << i << "  " << Utf8From1252(model.Textures[i].Name) << "\n";
    }
    s << "Sub-objects: " << model.SubObjectCount() << "\n";
    for (int slot = 0; slot < model.SubObjectCount(); ++slot) {
        const auto& column = model.MergeTable[static_cast<std::size_t>(slot)];
        const SubObject& sub = model.Sub(column[0]);
        s << "  slot " << slot << "  #" << sub.Index << " " << Quoted(sub.Name) << "  parent "
          << sub.Parent << "  offset " << Vec(sub.Offset) << "  " << sub.VertexCount()
          << " vertices, " << sub.FaceCount() << " faces";
        if (!sub.Properties.empty()) s << "  properties " << Quoted(sub.Properties);
        if (column.size() > 1) {
            s << "  merged " << List(std::vector<std::int32_t>(column.begin() + 1, column.end()));
        }
        if (sub.Pos.KeyCount() > 0) s << "  " << sub.Pos.KeyCount() << " position keys";
        if (sub.Rot.KeyCount() > 0) s << "  " << sub.Rot.KeyCount() << " rotation keys";
        s << "\n";
    }
    for (PointType t : kPointTypes) {
        const auto& list = model.Points(t);
        s << PointTag(t) << ": " << list.size() << "\n";
        for (std::size_t i = 0; i < list.size(); ++i) {
            s << "  " << i << "  parent " << list[i].Parent << "  at " << Vec(list[i].Position)
              << "  normal " << Vec(list[i].Normal) << "\n";
        }
    }
    if (model.Special) {
        s << "Special point: " << Quoted(model.Special->Name) << " at "
          << Vec(model.Special->Position) << ", radius " << model.Special->Radius << "\n";
    }
    s << "Batteries: " << model.Batteries.size() << "\n";
    for (std::size_t i = 0; i < model.Batteries.size(); ++i) {
        s << "  " << i << "  gun points " << List(model.Batteries[i].GunPoints) << "  turrets "
          << List(model.Batteries[i].Turrets) << "\n";
    }
    return s.str();
}

int InfoCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    constexpr const char* usage = "Usage: meshwright-cli info FILE [--json] [--geometry]\n";
    if (WantsHelp(args)) {
        out << usage
            << "Reads the model FILE and prints it: as text, or with --json as one JSON\n"
               "object. --geometry adds every sub-object's vertex and face lists.\n";
        return 0;
    }
    bool json = false, geometry = false;
    std::string file;
    for (const auto& a : args) {
        if (a == "--json") {
            json = true;
        } else if (a == "--geometry") {
            geometry = true;
        } else if (a.starts_with("--") || !file.empty()) {
            err << usage;
            return kExitUsage;
        } else {
            file = a;
        }
    }
    if (file.empty()) {
        err << usage;
        return kExitUsage;
    }
    ModelData model;
    if (const int status = LoadModelFile(file, model, err)) return status;
    out << (json ? ModelJson(model, geometry) + "\n" : ModelText(model));
    return 0;
}

}  // namespace mw
