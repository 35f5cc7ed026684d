// A glTF file (.glb or .gltf text): make a model of it; a model made must write, read back
// and export to glTF again, and that export must import to the same model.
#include <cstdlib>

#include "convert/gltf_export.h"
#include "convert/model_import.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mw::ImportScene scene;
    std::string error;
    if (!mw::ReadGltfSceneFromBytes({data, size}, scene, error)) {
        if (error.empty()) std::abort();
        return 0;
    }
    const mw::ImportResult imported = mw::ModelFromScene(scene);
    if (imported.Status != mw::ImportStatus::Done) return 0;
    mw::ModelData copy = imported.Model;
    mw::ModelData loaded;
    if (mw::readOOF(loaded, mw::WriteOOF(copy)) != mw::ResultCode::Success) std::abort();

    // Our own export of it comes back exactly.
    const mw::GlbFile glb = mw::ExportGLB(imported.Model, {});
    mw::ImportScene again;
    if (!mw::ReadGltfSceneFromBytes(glb.bytes(), again, error)) std::abort();
    const mw::ImportResult back = mw::ModelFromScene(again);
    if (back.Status != mw::ImportStatus::Done || !back.Exact) std::abort();
    mw::ModelData a = imported.Model, b = back.Model;
    if (mw::WriteOOF(a) != mw::WriteOOF(b)) std::abort();
    return 0;
}
