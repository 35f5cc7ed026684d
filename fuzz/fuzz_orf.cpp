// A room file: import it; what imports must export again (unless the room is too big for
// 16-bit indices) and import from that again with the same pieces.
#include <cstdlib>

#include "convert/orf_reader.h"
#include "convert/orf_writer.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const mw::GameNameTable names = mw::GameNameTable::Builtin();
    mw::ModelData model;
    const mw::ResultCode result = mw::importORF(model, {data, size}, names);
    if (result != mw::ResultCode::Success) {
        if (result != mw::ResultCode::NoORFData && result != mw::ResultCode::ORFVersionTooLow &&
            result != mw::ResultCode::ORFReadError) {
            std::abort();
        }
        return 0;
    }
    mw::CreatePushPop(model);
    mw::MoveSOBJ(model);
    std::vector<int> slots;
    for (int s = 0; s < model.SubObjectCount(); ++s)
        slots.push_back(s);
    std::vector<std::uint8_t> room;
    if (mw::BuildORF(model, slots, {true, true, 1.0f}, room).empty()) {
        mw::ModelData again;
        if (mw::importORF(again, room, names) != mw::ResultCode::Success) std::abort();
    }
    mw::ModelData fromOof;
    if (mw::readOOF(fromOof, mw::WriteOOF(model)) != mw::ResultCode::Success) std::abort();
    return 0;
}
