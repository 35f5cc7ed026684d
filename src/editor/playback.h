// The arithmetic of playback: one timer step over the played range, and the rules that keep
// the range's start below its end.
#pragma once

#include "editor/document.h"

namespace mw {

// Advances curFrame by `elapsed` seconds of real time, so that startFrame..endFrame takes
// animTime seconds. Past the end it loops (animLoop) or stops exactly at the end (animPlaying
// cleared). Returns true when it stopped.
bool AdvancePlayback(AnimationState& a, float elapsed);

// A start or end typed into the range spinners: `edited` 0 is the start, 1 the end. An end
// not above the start becomes start + 1; a start not below the end becomes end - 1. The
// values come back rounded to whole frames.
struct FrameRange {
    float start = 0.0f;
    float end = 1.0f;
};
FrameRange CorrectFrameRange(FrameRange range, int edited);

}  // namespace mw
