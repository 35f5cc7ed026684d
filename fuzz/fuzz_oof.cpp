// A model file: read it; what reads must also take the work that follows a load and
// write back to a file that reads again.
#include <cstdlib>

#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mw::ModelData model;
    if (mw::readOOF(model, {data, size}) != mw::ResultCode::Success) {
        if (!model.SubObjects.empty()) std::abort();
        return 0;
    }
    mw::CreatePushPop(model);
    mw::MoveSOBJ(model);
    mw::RecalcVertexNormals(model);
    const auto bytes = mw::WriteOOF(model);
    mw::ModelData again;
    if (mw::readOOF(again, bytes) != mw::ResultCode::Success) std::abort();
    if (again.SubObjectCount() != model.SubObjectCount()) std::abort();
    return 0;
}
