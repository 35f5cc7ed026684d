// The motion of the view between frames: animated and sliding textures and the rotators of
// "$rotate=" sub-objects, all driven by the seconds elapsed since the previous tick.
#pragma once

#include <vector>

#include "gamedata/texture_slot.h"
#include "model/model_data.h"

namespace mw {

// What one tick changed in the textures.
struct TextureChanges {
    std::vector<int> frames;  // textures whose current frame changed
    struct Offset {
        int texture;
        float u, v;
    };
    std::vector<Offset> offsets;  // textures whose slide offset changed
    bool any() const { return !frames.empty() || !offsets.empty(); }
};

// Advances the frame and slide clocks of every texture by `elapsed` seconds.
TextureChanges AdvanceTextures(std::vector<TextureSlot>& slots, float elapsed);

// Back to frame 0 and no slide ("Texture Animation" switched off).
TextureChanges ResetTextures(std::vector<TextureSlot>& slots);

// Advances the rotator angle (seconds into the current turn) of every "$rotate=" slot head.
// Returns true when any rotator exists.
bool AdvanceRotators(const ModelData& model, std::vector<float>& viewAngles, float elapsed);

class Renderer;
struct LoadedTextures;

// Hands what a tick changed to the renderer: new frames uploaded, offsets set.
void ApplyTextureChanges(Renderer& renderer, const TextureChanges& changes,
                         const LoadedTextures& textures);

// Runs the view's clock `seconds` forward in ticks of `step` seconds, as the animation timer
// would: textures (when `textures` is on), rotators. Returns true when anything moved.
bool AdvanceView(Renderer& renderer, const ModelData& model, LoadedTextures& loaded,
                 std::vector<float>& viewAngles, float seconds, bool textures, bool rotators,
                 float step = 1.0f / 60.0f);

// The seconds since the previous call, from a monotonic clock (0 at the first call).
class FrameClock {
  public:
    float Tick();
    void Reset() { started_ = false; }

  private:
    bool started_ = false;
    double previous_ = 0.0;
};

}  // namespace mw
