// Writes the model as room files (ORF): every vertex at its place in model space, optionally
// with a small square face for each attach, normal, ground and gun point.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "model/model_data.h"

namespace mw {

struct OrfExportOptions {
    bool CombineRooms = true;          // one file, or one per save slot
    bool SpecialPointsAsFaces = true;  // marker faces for the points
    float SpecialFaceSize = 1.0f;
};

struct OrfExportResult {
    bool Written = false;            // true when the files were written
    std::vector<std::string> Files;  // the files written
    std::string Message;             // why nothing (or not everything) was written
};

// `path` must contain ".orf" (any case); the files are named from the part before it.
OrfExportResult SaveORF(const ModelData& model, const std::string& path,
                        const OrfExportOptions& options);

// The bytes of one room file holding the given save slots; returns the refusal, or an
// empty text.
std::string BuildORF(const ModelData& model, const std::vector<int>& slots,
                     const OrfExportOptions& options, std::vector<std::uint8_t>& bytes);

// The four corners of the square marker face of a point, around `position`.
std::array<Vector3, 4> MarkerCorners(Vector3 position, Vector3 normal, float faceSize);

}  // namespace mw
