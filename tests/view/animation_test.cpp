#include "view/animation.h"

#include <gtest/gtest.h>

#include "support/oof_bytes.h"

namespace mw {
namespace {

TextureSlot Animated(int frames, float frameTime, bool pingPong) {
    TextureSlot t;
    t.FrameCount = frames;
    t.CurrentFrame = 0;
    t.FrameTime = frameTime;
    t.PixelCount = 1;
    if (pingPong) t.Gam.GamFlags = kGamFlagPingPong;
    return t;
}

void SetFloat(TextureSlot& t, std::size_t at, float v) {
    const auto bits = std::bit_cast<std::uint32_t>(v);
    for (std::size_t i = 0; i < 4; ++i)
        t.Gam.Block[at + i] = static_cast<std::uint8_t>(bits >> (8 * i));
}

TEST(TextureAnimation, PingPongRunsForwardAndBack) {
    std::vector<TextureSlot> slots{Animated(4, 0.1f, true)};
    std::vector<int> seen{slots[0].CurrentFrame};
    for (int i = 0; i < 8; ++i) {
        const TextureChanges c = AdvanceTextures(slots, 0.1f);
        EXPECT_EQ(c.frames, (std::vector<int>{0}));
        seen.push_back(slots[0].CurrentFrame);
    }
    EXPECT_EQ(seen, (std::vector<int>{0, 1, 2, 3, 2, 1, 0, 1, 2}));
}

TEST(TextureAnimation, ForwardAnimationsWrapAndWaitForTheirFrameTime) {
    std::vector<TextureSlot> slots{Animated(3, 0.25f, false)};
    EXPECT_TRUE(AdvanceTextures(slots, 0.1f).frames.empty());  // not yet
    EXPECT_EQ(slots[0].CurrentFrame, 0);
    AdvanceTextures(slots, 0.2f);
    EXPECT_EQ(slots[0].CurrentFrame, 1);
    AdvanceTextures(slots, 0.3f);
    AdvanceTextures(slots, 0.3f);
    EXPECT_EQ(slots[0].CurrentFrame, 0);  // wrapped
}

TEST(TextureAnimation, SlidingMovesByTheFractionOfItsSlideTime) {
    std::vector<TextureSlot> slots(1);
    SetFloat(slots[0], 20, 2.0f);  // SlideTimeU
    TextureChanges c = AdvanceTextures(slots, 0.5f);
    ASSERT_EQ(c.offsets.size(), 1u);
    EXPECT_FLOAT_EQ(c.offsets[0].u, 0.25f);
    EXPECT_EQ(c.offsets[0].v, 0.0f);
    c = AdvanceTextures(slots, 1.75f);  // past one whole slide
    EXPECT_FLOAT_EQ(c.offsets[0].u, 0.125f);

    const TextureChanges reset = ResetTextures(slots);
    ASSERT_EQ(reset.offsets.size(), 1u);
    EXPECT_EQ(reset.offsets[0].u, 0.0f);
    EXPECT_EQ(slots[0].SlidePosU, 0.0f);
}

TEST(TextureAnimation, StillTexturesDoNothing) {
    std::vector<TextureSlot> slots(2);
    EXPECT_FALSE(AdvanceTextures(slots, 1.0f).any());
}

TEST(Rotators, TurnOncePerRotateSpeedSeconds) {
    ModelData m = test::ModelWithParents({-1, 0});
    m.Sub(1).PropertyFlags = kPropRotate;
    m.Sub(1).RotateSpeed = 4.0f;
    std::vector<float> angles;
    EXPECT_TRUE(AdvanceRotators(m, angles, 1.0f));
    EXPECT_FLOAT_EQ(angles[1], 1.0f);  // a quarter of its 4-second turn: 90 degrees
    EXPECT_EQ(angles[0], 0.0f);
    AdvanceRotators(m, angles, 3.5f);
    EXPECT_FLOAT_EQ(angles[1], 0.5f);
    m.Sub(1).PropertyFlags = 0;
    EXPECT_FALSE(AdvanceRotators(m, angles, 1.0f));
}

}  // namespace
}  // namespace mw
