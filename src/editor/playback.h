// Playback: the animation timer and its clock, one timer step over the played range, and the
// rules that keep the range's start below its end.
#pragma once

#include <QObject>
#include <functional>

#include "editor/document.h"
#include "view/animation.h"

class QTimer;

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

// The animation timer: ticks as often as the system allows and measures each tick on a
// monotonic clock. While the document plays, a tick moves its frame; every tick is then
// announced, so the viewport can move animated textures and rotators.
class Playback : public QObject {
    Q_OBJECT
  public:
    explicit Playback(Document& doc, QObject* parent = nullptr);

    // Seconds since the previous tick; tests give a clock of their own.
    void SetClock(std::function<float()> clock) { clock_ = std::move(clock); }
    // One tick. The timer is off while it runs, so a slow step never starts a second one.
    void Tick();

  signals:
    void ticked(float elapsed);

  private:
    Document& doc_;
    QTimer* timer_ = nullptr;
    FrameClock frameClock_;
    std::function<float()> clock_;
    bool ticking_ = false;
};

}  // namespace mw
