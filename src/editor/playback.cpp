#include "editor/playback.h"

#include <QTimer>
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

Playback::Playback(Document& doc, QObject* parent) : QObject(parent), doc_(doc) {
    setObjectName("playback");
    clock_ = [this] { return frameClock_.Tick(); };
    timer_ = new QTimer(this);
    timer_->setObjectName("tmrAnimate");
    timer_->setInterval(1);
    connect(timer_, &QTimer::timeout, this, &Playback::Tick);
    timer_->start();
}

void Playback::Tick() {
    if (ticking_) return;
    ticking_ = true;
    timer_->stop();
    const float elapsed = clock_();
    if (doc_.animation().animPlaying) {
        AnimationState next = doc_.animation();
        const bool stopped = AdvancePlayback(next, elapsed);
        doc_.SetCurrentFrame(next.curFrame);
        if (stopped) doc_.SetPlaying(false);
    }
    emit ticked(elapsed);
    timer_->start();
    ticking_ = false;
}

}  // namespace mw
