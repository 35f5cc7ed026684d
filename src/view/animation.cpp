#include "view/animation.h"

#include <algorithm>
#include <chrono>

#include "gamedata/texture_loader.h"
#include "view/renderer.h"

namespace mw {

TextureChanges AdvanceTextures(std::vector<TextureSlot>& slots, float elapsed) {
    TextureChanges changes;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        TextureSlot& t = slots[i];
        const int index = static_cast<int>(i);
        if (t.FrameCount > 0) {
            t.FrameClock += elapsed;
            if (t.FrameClock >= t.FrameTime) {
                t.FrameClock = 0.0f;
                if (t.Gam.GamFlags & kGamFlagPingPong) {
                    t.CurrentFrame += t.FrameDirection;
                    if (t.CurrentFrame >= t.FrameCount) {
                        t.FrameDirection = -1;
                        t.CurrentFrame = t.FrameCount - 2;
                    }
                    if (t.CurrentFrame < 0) {
                        t.CurrentFrame = 1;
                        t.FrameDirection = 1;
                    }
                    // A single frame has nowhere to go.
                    if (t.CurrentFrame < 0 || t.CurrentFrame >= t.FrameCount) t.CurrentFrame = 0;
                } else {
                    t.CurrentFrame = (t.CurrentFrame + 1) % t.FrameCount;
                }
                changes.frames.push_back(index);
            }
        }
        float u = 0.0f, v = 0.0f;
        const float slideU = t.Gam.SlideTimeU(), slideV = t.Gam.SlideTimeV();
        if (slideU > 0.0f) {
            t.SlidePosU += elapsed;
            if (t.SlidePosU >= slideU) t.SlidePosU -= slideU;
            u = t.SlidePosU / slideU;
        }
        if (slideV > 0.0f) {
            t.SlidePosV += elapsed;
            if (t.SlidePosV >= slideV) t.SlidePosV -= slideV;
            v = t.SlidePosV / slideV;
        }
        if (u != 0.0f || v != 0.0f) changes.offsets.push_back({index, u, v});
    }
    return changes;
}

TextureChanges ResetTextures(std::vector<TextureSlot>& slots) {
    TextureChanges changes;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        TextureSlot& t = slots[i];
        if (t.FrameCount > 0) {
            t.CurrentFrame = 0;
            t.FrameClock = 0.0f;
            t.FrameDirection = 1;
            changes.frames.push_back(static_cast<int>(i));
        }
        if (t.Gam.SlideTimeU() > 0.0f || t.Gam.SlideTimeV() > 0.0f) {
            t.SlidePosU = t.SlidePosV = 0.0f;
            changes.offsets.push_back({static_cast<int>(i), 0.0f, 0.0f});
        }
    }
    return changes;
}

bool AdvanceRotators(const ModelData& model, std::vector<float>& viewAngles, float elapsed) {
    viewAngles.resize(model.SubObjects.size(), 0.0f);
    bool any = false;
    for (int k = 0; k < model.SubObjectCount(); ++k) {
        const int s = model.Head(k);
        const SubObject& sub = model.Sub(s);
        if ((sub.PropertyFlags & kPropRotate) == 0 || sub.RotateSpeed <= 0.0f) continue;
        float& angle = viewAngles[static_cast<std::size_t>(s)];
        angle += elapsed;
        while (angle > sub.RotateSpeed)
            angle -= sub.RotateSpeed;
        if (angle < 0.0f) angle = 0.0f;
        any = true;
    }
    return any;
}

void ApplyTextureChanges(Renderer& renderer, const TextureChanges& changes,
                         const LoadedTextures& textures) {
    for (int t : changes.frames) {
        renderer.UploadTextureFrame(t, textures.Slots[static_cast<std::size_t>(t)],
                                    textures.Frames);
    }
    for (const auto& o : changes.offsets)
        renderer.SetTextureOffset(o.texture, o.u, o.v);
}

bool AdvanceView(Renderer& renderer, const ModelData& model, LoadedTextures& loaded,
                 std::vector<float>& viewAngles, float seconds, bool textures, bool rotators,
                 float step) {
    bool moved = false;
    for (float done = 0.0f; done < seconds;) {
        const float elapsed = std::min(step, seconds - done);
        done += elapsed;
        if (textures) {
            const TextureChanges changes = AdvanceTextures(loaded.Slots, elapsed);
            ApplyTextureChanges(renderer, changes, loaded);
            moved = moved || changes.any();
        }
        if (rotators) moved = AdvanceRotators(model, viewAngles, elapsed) || moved;
    }
    return moved;
}

float FrameClock::Tick() {
    const double now =
        std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    if (!started_) {
        started_ = true;
        previous_ = now;
    }
    const float elapsed = static_cast<float>(now - previous_);
    previous_ = now;
    return elapsed;
}

}  // namespace mw
