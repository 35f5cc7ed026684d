#include "convert/model_import.h"

#include "convert/scene_model.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "model/properties.h"
#include "model/text_codec.h"

namespace mw {

namespace {

// Files of these names are read as glTF; all others through the asset library.
bool IsGltfName(const std::filesystem::path& path) {
    const std::string ext = LowerCase1252(path.extension().string());
    return ext == ".gltf" || ext == ".glb";
}

}  // namespace

ImportResult ModelFromScene(const ImportScene& scene, const ImportOptions& options) {
    ImportResult result;
    SceneModelBuilder builder(scene);
    if (!builder.AnyFaces()) {
        result.Status = ImportStatus::NoMesh;
        result.Error = "The file holds no mesh.";
        return result;
    }
    ModelData model;
    if (auto exact = builder.Exact()) {
        model = std::move(*exact);
        result.Exact = true;
    } else {
        model = builder.Generic();
    }
    result.Notes = std::move(builder.Notes);
    result.MergedTriangles = builder.MergedTriangles;
    if (options.Scale != 1.0f && ScaleModel(model, options.Scale * 100.0f) != ScaleResult::Done) {
        result.Status = ImportStatus::BadScale;
        result.Error = "At that scale the model would be too small or too large for the game.";
        return result;
    }
    if (result.Exact) {
        // Whatever the extras say, the model must be one the reader takes.
        ModelData copy = model;
        ModelData check;
        if (readOOF(check, WriteOOF(copy)) != ResultCode::Success) {
            result.Status = ImportStatus::Unreadable;
            result.Error = "The model kept in the file's extras is damaged.";
            return result;
        }
    }
    // Derived as a load derives it. Not through a write and a read: a save turns the axes
    // of keys with no angle, so the kept keys would not come back.
    for (std::size_t s = 0; s < model.SubObjects.size(); ++s) {
        SubObject& sub = model.SubObjects[s];
        ParseProperties(sub);
        sub.BoxMin = {90000.0f, 90000.0f, 90000.0f};
        sub.BoxMax = {-90000.0f, -90000.0f, -90000.0f};
        sub.HasAlpha = false;
        for (const Vertex& v : sub.Vertices) {
            sub.BoxMin = ComponentMin(sub.BoxMin, v.Position);
            sub.BoxMax = ComponentMax(sub.BoxMax, v.Position);
            if (v.Alpha < 0.99f) sub.HasAlpha = true;
        }
        CalcRotMatrix(model, static_cast<int>(s));
    }
    result.Model = std::move(model);
    CreatePushPop(result.Model);
    return result;
}

std::vector<std::string> ImportReport(const ImportResult& result) {
    const ModelData& m = result.Model;
    std::vector<std::string> lines;
    lines.push_back(std::to_string(m.SubObjectCount()) + " sub-objects, " +
                    std::to_string(m.Textures.size()) + " textures, " +
                    std::to_string(m.GunPoints.size()) + " gun points, " +
                    std::to_string(m.AttachPoints.size()) + " attach points, " +
                    std::to_string(m.GroundPoints.size()) + " ground points" +
                    (result.Exact ? "; as exported" : "") + ".");
    for (const SubObject& sub : m.SubObjects) {
        if (sub.Pos.Keys.empty() && sub.Rot.Keys.empty()) continue;
        lines.push_back("Keys of \"" + Utf8From1252(sub.Name) +
                        "\": " + std::to_string(sub.Pos.Keys.size()) + " position, " +
                        std::to_string(sub.Rot.Keys.size()) + " rotation (frames " +
                        std::to_string(m.FrameMin) + " to " + std::to_string(m.FrameMax) + ").");
    }
    if (result.MergedTriangles > 0) {
        lines.push_back("Joined " + std::to_string(result.MergedTriangles) +
                        " triangles into the polygons they were cut from.");
    }
    for (const std::string& note : result.Notes)
        lines.push_back("Note: " + note);
    return lines;
}

ImportResult ImportModel(const std::filesystem::path& path, const ImportOptions& options) {
    ImportScene scene;
    std::string error;
    const bool read = IsGltfName(path) ? ReadGltfScene(path.string(), scene, error)
                                       : ReadAssimpScene(path.string(), scene, error);
    if (!read) {
        ImportResult result;
        result.Status = ImportStatus::Unreadable;
        result.Error = error;
        return result;
    }
    return ModelFromScene(scene, options);
}

}  // namespace mw
