// Opens a room file (ORF) as a model: its faces split into connected pieces, one
// sub-object each with its pivot at the centre of its box.
#pragma once

#include <cstdint>
#include <span>

#include "convert/game_name_table.h"
#include "model/model_data.h"
#include "model/result_code.h"

namespace mw {

inline constexpr int kMaxRoomCorners = 255;
inline constexpr int kMaxRoomPieces = 256;

// Fills `model` from a room's bytes. Returns Success, NoORFData, ORFVersionTooLow or
// ORFReadError; on failure the model is empty.
ResultCode importORF(ModelData& model, std::span<const std::uint8_t> bytes,
                     const GameNameTable& names);

}  // namespace mw
