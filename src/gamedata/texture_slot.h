// What the view needs to know about each model texture: its GAM properties, its size and
// alpha, and where its animation frames lie in the shared frame store.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace mw {

// The 41-byte property block of a GAM texture page.
struct GamTextureProperties {
    std::array<std::uint8_t, 33> Block{};  // bytes 0..32 as stored
    std::uint32_t Extra = 0;               // bytes 33..36
    std::uint32_t GamFlags = 0;            // bytes 37..40

    float Alpha() const;          // bytes 12..15
    float AnimationTime() const;  // bytes 16..19
    float SlideTimeU() const;     // bytes 20..23
    float SlideTimeV() const;     // bytes 24..27
};

inline constexpr std::uint32_t kGamFlagAlpha = 0x4000;
inline constexpr std::uint32_t kGamFlagPingPong = 262144;

struct TextureSlot {
    GamTextureProperties Gam;
    bool HasAlpha = false;
    int Width = 0;
    int Height = 0;
    int PixelCount = 0;
    int FrameCount = 0;    // 0 for a still image
    int CurrentFrame = 0;  // 1 after an animation was decoded
    float FrameTime = 0.0f;
    std::size_t FrameBase = 0;  // first pixel of frame 0 in the frame store

    // Animation state, advanced by the view's frame clock.
    float FrameClock = 0.0f;  // seconds since the last frame change
    int FrameDirection = 1;   // +1 or -1 for ping-pong animations
    float SlidePosU = 0.0f;   // seconds into the current slide
    float SlidePosV = 0.0f;
};

// The frames of all animated textures of the model, one after another.
struct FrameStore {
    std::vector<std::uint32_t> Pixels;
    int AnimatedCount = 0;

    void Clear() {
        Pixels.clear();
        AnimatedCount = 0;
    }
};

}  // namespace mw
