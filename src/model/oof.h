// The model object: owns the one open model and loads and saves it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "model/model_data.h"
#include "model/result_code.h"

namespace mw {

class clsOOF {
  public:
    ModelData& data() { return model_; }
    const ModelData& data() const { return model_; }

    // Reads an OOF file's bytes; on success the draw order is rebuilt as well.
    ResultCode readOOF(std::span<const std::uint8_t> bytes);

    // Writes the model; returns the failure message, empty on success.
    std::string SaveOOF(const std::filesystem::path& path);

  private:
    ModelData model_;
};

}  // namespace mw
