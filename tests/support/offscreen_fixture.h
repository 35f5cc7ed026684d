// A test suite's one offscreen view, made once for the suite, and the head-on frame the
// pixel tests look at.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "view/offscreen.h"

namespace mw::test {

class OffscreenViewTest : public ::testing::Test {
  protected:
    static void MakeView(int width, int height) {
        view_ = std::make_unique<OffscreenView>();
        std::string error;
        ASSERT_TRUE(view_->Create(width, height, error)) << error;
    }
    static void TearDownTestSuite() { view_.reset(); }

    // Camera angles 0 (looking at the model's +Z side), fitted zoom, no point glyphs.
    static FrameInput HeadOn(const ModelData& m, ViewType type) {
        FrameInput in = FittedFrame(m);
        in.camera.AngleX = in.camera.AngleY = 0.0f;
        in.display.ViewPoints = false;
        in.display.Type = type;
        return in;
    }

    static inline std::unique_ptr<OffscreenView> view_;
};

}  // namespace mw::test
