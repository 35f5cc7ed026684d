// Pictures that become textures: any image Qt reads (PNG, BMP, JPEG, ...) and Targa files
// through the program's own reader, as 32-bit RGBA.
#pragma once

#include <optional>
#include <string>

#include "gamedata/ogf_writer.h"

namespace mw {

// The picture at `path`; nullopt with `error` set when it cannot be read.
std::optional<RgbaImage> ReadTextureImage(const std::string& path, std::string& error);

// The picture scaled smoothly to the nearest power of two on each side.
RgbaImage ResizeToPowerOfTwo(const RgbaImage& image);
int NearestPowerOfTwo(int n);

}  // namespace mw
