// The animation strip ("Animation Controls") under the viewport: Play/Stop, the frame
// buttons, "Play Continuously", the current frame, the played range and its length in
// seconds, and the timeline of the selected sub-object's keys. It changes the animation
// settings through the document and follows them, and keeps the timeline in line with the
// document; playback itself runs on its own timer.
#pragma once

#include <QWidget>

class QCheckBox;
class QGroupBox;
class QToolButton;

namespace mw {

class Document;
class keyControl;
class spinControl;

class AnimationStrip : public QWidget {
    Q_OBJECT
  public:
    AnimationStrip(Document& doc, QWidget* parent = nullptr);

    keyControl& timeline() { return *keyControl_; }

    // Play or Stop, as the button does: play from where the frame is (from the start when it
    // stands at the end), or stop.
    void PlayStop();
    // The strip's state for a newly loaded model (or none).
    void ResetAnimation();
    // Gives the timeline the keys of the selected sub-object, as the key filter allows.
    void LoadTimelineKeys();

  private:
    void connectSignals();
    QGroupBox* BuildTimeConfiguration();
    void FollowFrame();
    void FollowSettings();
    void ShowPlaying(bool playing);
    void CurrentFrameTyped();
    void RangeChanged(int i);
    void SetCurrentFrameRange(int start, int end);

    Document& doc_;
    bool filling_ = false;
    keyControl* keyControl_ = nullptr;
    QToolButton* cmdPlayStop_ = nullptr;
    QToolButton* cmdPreviousFrame_ = nullptr;
    QToolButton* cmdNextFrame_ = nullptr;
    QCheckBox* chkPlayContinuously_ = nullptr;
    spinControl* txtCurrentFrame_ = nullptr;
    spinControl* txtFrameRange_[2]{};
    spinControl* txtAnimateTime_ = nullptr;
};

}  // namespace mw
