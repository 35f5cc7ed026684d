// Makes a model from a 3-D file: glTF through tinygltf, the other formats through the Open
// Asset Import Library. A file our own glTF export wrote comes back exactly through its
// "descent3" extras, except for what an editor changed in it since.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "convert/import_scene.h"
#include "model/model_data.h"

namespace mw {

struct ImportOptions {
    float Scale = 1.0f;  // applied to every position
};

enum class ImportStatus { Done, Unreadable, NoMesh, BadScale };

struct ImportResult {
    ImportStatus Status = ImportStatus::Done;
    std::string Error;               // the reader's message when the file could not be read
    ModelData Model;                 // as after a load
    bool Exact = false;              // rebuilt from our own extras
    std::vector<std::string> Notes;  // what was changed on the way in, for people
    int MergedTriangles = 0;         // triangles joined back into polygons
};

ImportResult ImportModel(const std::filesystem::path& path, const ImportOptions& options = {});

// What the import made, for people, a line each: the sub-objects and points, the keys of each
// sub-object that has any, the triangles joined into polygons, and what was not carried.
std::vector<std::string> ImportReport(const ImportResult& result);

// The model of a scene already read.
ImportResult ModelFromScene(const ImportScene& scene, const ImportOptions& options = {});

}  // namespace mw
