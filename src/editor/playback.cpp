#include "editor/playback.h"

#include <cmath>

namespace mw {

bool AdvancePlayback(AnimationState& a, float elapsed) {
    if (!a.animPlaying) return false;
    const auto start = static_cast<float>(a.startFrame);
    const auto end = static_cast<float>(a.endFrame);
    a.curFrame += elapsed / a.animTime * (end - start);
    bool stopped = false;
    if (a.curFrame > end) {
        if (a.animLoop) {
            a.curFrame = a.curFrame - end + start;
            if (a.curFrame > end) a.curFrame = start;
        } else {
            a.animPlaying = false;
            a.curFrame = end;
            stopped = true;
        }
    }
    if (a.curFrame < start) a.curFrame = start;
    return stopped;
}

FrameRange CorrectFrameRange(FrameRange range, int edited) {
    if (edited == 1 && !(range.end > range.start)) range.end = range.start + 1.0f;
    if (edited == 0 && !(range.start < range.end)) range.start = range.end - 1.0f;
    range.start = std::nearbyint(range.start);
    range.end = std::nearbyint(range.end);
    return range;
}

}  // namespace mw
