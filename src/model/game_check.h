// Checks a model against the limits of the game's own model loader: what it refuses or
// asserts on (errors) and what it changes or ignores (warnings), each finding with a stable
// code, the part of the model concerned and a message for the modder.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model/model_data.h"

namespace mw {

// The loader's limits.
inline constexpr int kGameMaxSubObjects = 30;
inline constexpr int kGameMaxTextures = 34;
inline constexpr int kGameMaxVertices = 2499;
inline constexpr int kGameMaxFaceCorners = 99;
inline constexpr int kGameMaxSingleFaceCorners = 30;
inline constexpr int kGameMaxNameLength = 31;
inline constexpr int kGameMaxPropertyLength = 255;
inline constexpr int kGameMaxBatteries = 21;
// A texture's image is NAME.ogf: the game loads bitmap names of at most 33 characters and
// keeps 28 characters of their stem.
inline constexpr std::size_t kGameMaxTextureNameLength = 29;
inline constexpr std::size_t kGameBitmapStemLength = 28;

enum class Severity { Warning, Error };
const char* SeverityName(Severity severity);

struct CheckPoint {
    PointType Type = PointType::GPNT;
    int Index = 0;
};

struct Finding {
    Severity Level = Severity::Error;
    std::string Code;
    int SubObject = -1;  // -1: none
    std::optional<CheckPoint> Point;
    int Texture = -1;
    int Battery = -1;
    std::string Message;
};

// Every finding, in a fixed order: model-wide limits, then each sub-object in save-slot
// order, points, batteries and textures. `textureResolved`, when given (game data was
// named), tells per model texture whether the game data has it.
std::vector<Finding> CheckModel(const ModelData& model,
                                const std::vector<bool>* textureResolved = nullptr);

bool HasErrors(const std::vector<Finding>& findings);

}  // namespace mw
