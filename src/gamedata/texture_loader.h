// Resolves every texture of the open model to an image from the game data, decodes it and
// hands the pixels to the view's uploader; what cannot be found or decoded gets the
// placeholder, so a model always renders.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gamedata/gam.h"
#include "gamedata/hog.h"
#include "gamedata/ogf.h"
#include "gamedata/settings.h"
#include "gamedata/texture_slot.h"
#include "model/model_data.h"

namespace mw {

// The view's side of texture loading.
class TextureUploader {
  public:
    virtual ~TextureUploader() = default;
    // Drops the previous model's textures and makes one per model texture.
    virtual void AllocModelTextures(int count) = 0;
    // Pixels are rows from the top, red in the lowest byte.
    virtual void UploadModelTexture(int texture, int width, int height,
                                    const std::uint32_t* pixels) = 0;
};

// Where a texture's image came from.
enum class TextureSource { Missing, Loose, Mission, Extra13, D3 };
const char* TextureSourceName(TextureSource source);

struct ResolvedTexture {
    TextureSource Source = TextureSource::Missing;
    std::string Path;  // the loose file, or the archive entry's name
    OgfStatus Status = OgfStatus::Ok;
    bool Decoded = false;  // false: the placeholder was uploaded
};

struct LoadedTextures {
    std::vector<TextureSlot> Slots;
    std::vector<TextureNames> Names;  // as the tables resolve them; the model keeps its own
    std::vector<ResolvedTexture> Resolved;
    FrameStore Frames;
    std::uint8_t ObjectKind = 0;
};

// Per model texture: whether the game data had it.
std::vector<bool> FoundInGameData(const LoadedTextures& loaded);

// The game-data readers the loader works with.
struct GameData {
    clsHOG Hog;
    clsGAM Gam;
    clsOGF Ogf;
};

// 32 x 32 opaque pixels of random colours.
std::vector<std::uint32_t> MakeMissingTexture(std::uint32_t seed);
inline constexpr int kMissingTextureSize = 32;

// Finds a game texture by name as a model texture would be, and decodes it (the first frame
// of an animation). nullopt when it cannot be found or decoded.
std::optional<DecodedImage> DecodeGameTexture(std::string_view name, GameData& data,
                                              const Settings& settings);

// The glow sprites' texture when the game has no "thrustball": a white spot fading to black
// at radius 32, 64 x 64.
DecodedImage GeneratedGlowImage();

// Decodes a picture file (PNG, Targa ...) for a texture, sized for upload; nullopt when it
// cannot be read.
using PictureDecoder = std::function<std::optional<DecodedImage>(const std::string& path)>;

// Resolves, decodes and hands to `uploader` every texture of the model; the model is not
// changed (what the tables resolve is kept in `out`). With `pictures`, a texture the game
// data lacks is also looked for as NAME.png or NAME.tga in the model's folder and the loose
// image folder (a model made from another program brings its textures so).
void LoadModelTextures(const ModelData& model, const std::string& modelPath, GameData& data,
                       const Settings& settings, const std::vector<std::uint32_t>& missing,
                       TextureUploader& uploader, LoadedTextures& out,
                       const PictureDecoder& pictures = {});

}  // namespace mw
