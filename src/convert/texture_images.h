// Pictures that become textures: any image Qt reads (PNG, BMP, JPEG, ...) and Targa files
// through the program's own reader, as 32-bit RGBA.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gamedata/ogf_writer.h"
#include "gamedata/texture_loader.h"
#include "model/model_data.h"

namespace mw {

// The picture at `path`; nullopt with `error` set when it cannot be read.
std::optional<RgbaImage> ReadTextureImage(const std::string& path, std::string& error);

// The picture scaled smoothly to the nearest power of two on each side.
RgbaImage ResizeToPowerOfTwo(const RgbaImage& image);
int NearestPowerOfTwo(int n);

}  // namespace mw

namespace mw {

// A picture file decoded for a texture: scaled to powers of two where it is not, as the
// renderer needs them. The texture loader's PictureDecoder.
std::optional<DecodedImage> DecodePictureFile(const std::string& path);

// The decoded picture of each model texture that the game data (or a loose image beside
// the model) has; nullopt for the others.
std::vector<std::optional<RgbaImage>> ResolveTexturePictures(const ModelData& model,
                                                             const std::string& modelPath,
                                                             GameData& data,
                                                             const Settings& settings);

}  // namespace mw
