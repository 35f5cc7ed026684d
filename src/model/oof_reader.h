// Reads an OOF model file into the model.
#pragma once

#include <cstdint>
#include <span>

#include "model/model_data.h"
#include "model/result_code.h"

namespace mw {

// Fills `model` from the bytes of one OOF file. On any result but Success the model is
// left empty (NotOOF and OOFVersionTooLow leave the previous model untouched).
ResultCode readOOF(ModelData& model, std::span<const std::uint8_t> bytes);

}  // namespace mw
