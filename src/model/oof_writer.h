// Writes the model as an OOF file (always version 2300).
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "model/model_data.h"

namespace mw {

// The bytes of the OOF file for the model. Sets Version to 2300 and PinfText to
// WriterInfo(); merged save slots become one sub-object each.
std::vector<std::uint8_t> WriteOOF(ModelData& model);

// WriteOOF into a file. An empty path does nothing. Returns the failure message, if any.
std::string SaveOOF(ModelData& model, const std::filesystem::path& path);

}  // namespace mw
