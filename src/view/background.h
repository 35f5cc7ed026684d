// The picture behind the model: Targa files through the program's own reader, every other
// type through Qt's image readers. Pixels are red, green, blue bytes, rows from the bottom.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "gamedata/progress.h"

namespace mw {

struct BackgroundImage {
    int Width = 0;
    int Height = 0;
    std::vector<std::uint8_t> Rgb;  // Width x Height x 3, row 0 at the bottom
};

// An uncompressed true-colour Targa (15, 16, 24 or 32 bits, any orientation); nullopt for
// colour-mapped, run-length or damaged files.
std::optional<BackgroundImage> LoadTGA(std::span<const std::uint8_t> bytes,
                                       ProgressSink* progress = nullptr);

// The picture at `path`: Targa by its ending, anything else Qt can read.
std::optional<BackgroundImage> LoadBackgroundPicture(const std::string& path,
                                                     ProgressSink* progress = nullptr);

}  // namespace mw
