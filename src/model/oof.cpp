#include "model/oof.h"

#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"

namespace mw {

ResultCode clsOOF::readOOF(std::span<const std::uint8_t> bytes) {
    const ResultCode result = mw::readOOF(model_, bytes);
    if (result == ResultCode::Success) CreatePushPop(model_);
    return result;
}

std::string clsOOF::SaveOOF(const std::filesystem::path& path) {
    return mw::SaveOOF(model_, path);
}

}  // namespace mw
