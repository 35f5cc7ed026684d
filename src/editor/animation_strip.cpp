#include "editor/animation_strip.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "editor/document.h"
#include "editor/key_commands.h"
#include "editor/panels/panel_widgets.h"
#include "editor/playback.h"
#include "editor/toolbar_icons.h"
#include "editor/widgets/key_control.h"
#include "editor/widgets/spin_control.h"

namespace mw {
namespace {

QToolButton* MakeFrameButton(QWidget* parent, const QString& name, const QString& icon,
                             const QString& caption) {
    auto* button = new QToolButton(parent);
    button->setObjectName(name);
    button->setIcon(ToolbarIcon(icon));
    button->setText(caption);
    button->setToolTip(caption);
    button->setAccessibleName(caption);
    button->setToolButtonStyle(Qt::ToolButtonIconOnly);
    button->setAutoRaise(true);
    return button;
}

}  // namespace

AnimationStrip::AnimationStrip(Document& doc, QWidget* parent) : QWidget(parent), doc_(doc) {
    setObjectName("AnimationStrip");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    keyControl_ = new keyControl(this);
    keyControl_->SetKeyTrackColor(QColor(255, 255, 192));
    keyControl_->SetSlideTrackColor(Qt::white);
    layout->addWidget(keyControl_);

    auto* row = new QHBoxLayout;
    cmdPlayStop_ = MakeFrameButton(this, "cmdPlayStop", "play", "Play");
    cmdPreviousFrame_ =
        MakeFrameButton(this, "cmdPreviousFrame", "previousframe", "Previous Frame");
    cmdNextFrame_ = MakeFrameButton(this, "cmdNextFrame", "nextframe", "Next Frame");
    chkPlayContinuously_ = new QCheckBox("Play Continuously", this);
    chkPlayContinuously_->setObjectName("chkPlayContinuously");
    chkPlayContinuously_->setIcon(ToolbarIcon("looping"));
    row->addWidget(cmdPlayStop_);
    row->addWidget(cmdPreviousFrame_);
    row->addWidget(cmdNextFrame_);
    row->addWidget(chkPlayContinuously_);
    txtCurrentFrame_ =
        MakeSpinner(this, "txtCurrentFrame", "Current Frame", 0, 999, "##0.##", 0.01f, 1.5f);
    auto* frameLabel = new QLabel("Frame:", this);
    frameLabel->setBuddy(txtCurrentFrame_);
    row->addSpacing(8);
    row->addWidget(frameLabel);
    row->addWidget(txtCurrentFrame_);
    row->addStretch(1);
    row->addWidget(BuildTimeConfiguration());
    layout->addLayout(row);
    connectSignals();
    ResetAnimation();
}

QGroupBox* AnimationStrip::BuildTimeConfiguration() {
    auto* box = new QGroupBox("Time Configuration", this);
    box->setObjectName("fraTimeConfiguration");
    auto* row = new QHBoxLayout(box);
    row->setContentsMargins(6, 2, 6, 2);
    const char* const captions[2] = {"Start :", "End :"};
    const char* const names[2] = {"Start", "End"};
    for (int i = 0; i < 2; ++i) {
        txtFrameRange_[i] = MakeSpinner(box, QString("txtFrameRange_%1").arg(i), names[i], 0, 999,
                                        "##0", 1.0f, 1.0f);
        txtFrameRange_[i]->setMinimumWidth(64);
        auto* label = new QLabel(captions[i], box);
        label->setBuddy(txtFrameRange_[i]);
        row->addWidget(label);
        row->addWidget(txtFrameRange_[i]);
    }
    txtAnimateTime_ =
        MakeSpinner(box, "txtAnimateTime", "Animation Length", 0.1f, 99.9f, "#0.0", 0.1f, 1.0f);
    txtAnimateTime_->setMinimumWidth(64);
    auto* length = new QLabel("Animation Length:", box);
    length->setBuddy(txtAnimateTime_);
    row->addWidget(length);
    row->addWidget(txtAnimateTime_);
    row->addWidget(new QLabel("sec.", box));
    return box;
}

void AnimationStrip::connectSignals() {
    connect(&doc_, &Document::frameChanged, this, &AnimationStrip::FollowFrame);
    connect(&doc_, &Document::playingChanged, this, &AnimationStrip::ShowPlaying);
    connect(&doc_, &Document::modelReset, this, &AnimationStrip::ResetAnimation);
    for (auto signal : {&Document::selectionChanged, &Document::structureChanged}) {
        connect(&doc_, signal, this, &AnimationStrip::LoadTimelineKeys);
    }
    connect(&doc_, &Document::keysChanged, this, &AnimationStrip::LoadTimelineKeys);
    connect(&doc_, &Document::animationSettingsChanged, this, &AnimationStrip::FollowSettings);

    connect(cmdPlayStop_, &QToolButton::clicked, this, &AnimationStrip::PlayStop);
    connect(cmdPreviousFrame_, &QToolButton::clicked, keyControl_, &keyControl::PrevFrame);
    connect(cmdNextFrame_, &QToolButton::clicked, keyControl_, &keyControl::NextFrame);
    connect(chkPlayContinuously_, &QCheckBox::toggled, &doc_, &Document::SetAnimLoop);
    connect(txtCurrentFrame_, &spinControl::Change, this, &AnimationStrip::CurrentFrameTyped);
    for (int i = 0; i < 2; ++i) {
        connect(txtFrameRange_[i], &spinControl::Change, this, [this, i] { RangeChanged(i); });
    }
    connect(txtAnimateTime_, &spinControl::Change, this, [this] {
        if (!filling_) doc_.SetAnimTime(txtAnimateTime_->Value());
    });

    connect(keyControl_, &keyControl::FrameChange, this,
            [this](int frame) { doc_.GoToFrame(static_cast<float>(frame)); });
    connect(keyControl_, &keyControl::MoveKey, this, [this](int from, int to) {
        const int s = doc_.selection().curSOBJ;
        if (!doc_.modelReady() || !doc_.model().IsRecord(s)) return;
        doc_.Apply(MakeMoveKeysCommand(doc_, s, from, to,
                                       static_cast<KeyFilter>(doc_.animation().keyFilter)));
    });
    connect(keyControl_, &keyControl::MoveKeyDone, &doc_, &Document::EndEditSession);
}

void AnimationStrip::FollowFrame() {
    filling_ = true;
    const float frame = doc_.animation().curFrame;
    keyControl_->SetCurKeyFrame(frame);
    txtCurrentFrame_->SetValue(frame);
    filling_ = false;
}

void AnimationStrip::ShowPlaying(bool playing) {
    cmdPlayStop_->setIcon(ToolbarIcon(playing ? "stop" : "play"));
    cmdPlayStop_->setText(playing ? "Stop" : "Play");
    cmdPlayStop_->setToolTip(cmdPlayStop_->text());
    cmdPlayStop_->setAccessibleName(cmdPlayStop_->text());
    cmdPreviousFrame_->setEnabled(!playing);
    cmdNextFrame_->setEnabled(!playing);
}

void AnimationStrip::PlayStop() {
    const AnimationState& a = doc_.animation();
    if (a.animPlaying) {
        doc_.GoToFrame(a.curFrame);
        return;
    }
    // Play at the end starts again from the start.
    if (a.curFrame == static_cast<float>(a.endFrame)) {
        doc_.SetCurrentFrame(static_cast<float>(a.startFrame));
    }
    doc_.SetPlaying(true);
}

void AnimationStrip::CurrentFrameTyped() {
    if (filling_) return;
    doc_.GoToFrame(txtCurrentFrame_->Value());
}

void AnimationStrip::SetCurrentFrameRange(int start, int end) {
    // Minimum 0 first, then the maximum, then the minimum: the value is clamped into the range.
    const bool wasFilling = filling_;
    filling_ = true;
    txtCurrentFrame_->SetMin(0.0f);
    txtCurrentFrame_->SetMax(static_cast<float>(end));
    txtCurrentFrame_->SetMin(static_cast<float>(start));
    filling_ = wasFilling;
}

void AnimationStrip::RangeChanged(int i) {
    if (filling_) return;
    const FrameRange range =
        CorrectFrameRange({txtFrameRange_[0]->Value(), txtFrameRange_[1]->Value()}, i);
    doc_.SetFrameRange(static_cast<int>(range.start), static_cast<int>(range.end));
    // The range spinners show what the document took, even when that did not change.
    FollowSettings();
    doc_.GoToFrame(txtCurrentFrame_->Value());
}

// The loop, the time, the range and the key filter as the document has them.
void AnimationStrip::FollowSettings() {
    const bool wasFilling = filling_;
    filling_ = true;
    const AnimationState& a = doc_.animation();
    chkPlayContinuously_->setChecked(a.animLoop);
    txtAnimateTime_->SetValue(a.animTime);
    txtFrameRange_[0]->SetValue(static_cast<float>(a.startFrame));
    txtFrameRange_[1]->SetValue(static_cast<float>(a.endFrame));
    keyControl_->SetMinMax(a.startFrame, a.endFrame);
    SetCurrentFrameRange(a.startFrame, a.endFrame);
    filling_ = wasFilling;
    if (keyControl_->FilterKeys() != a.keyFilter) LoadTimelineKeys();
}

void AnimationStrip::ResetAnimation() {
    filling_ = true;
    keyControl_->DeleteKeys();
    const AnimationState& a = doc_.animation();
    keyControl_->SetMinMax(a.startFrame, a.endFrame);
    txtCurrentFrame_->SetMin(0.0f);
    txtCurrentFrame_->SetMax(static_cast<float>(a.endFrame));
    txtCurrentFrame_->SetValue(a.curFrame);
    txtFrameRange_[0]->SetValue(static_cast<float>(a.startFrame));
    txtFrameRange_[1]->SetValue(static_cast<float>(a.endFrame));
    txtAnimateTime_->SetValue(a.animTime);
    chkPlayContinuously_->setChecked(a.animLoop);
    keyControl_->SetCurKeyFrame(a.curFrame);
    ShowPlaying(a.animPlaying);
    filling_ = false;
    LoadTimelineKeys();
}

void AnimationStrip::LoadTimelineKeys() {
    // A key that stays where it was stays selected (a timeline drag goes on through edits).
    const int selected = keyControl_->SelectedKeyFrame();
    keyControl_->DeleteKeys();
    const int filter = doc_.animation().keyFilter;
    keyControl_->SetFilterKeys(filter);
    const int s = doc_.selection().curSOBJ;
    if (!doc_.hasModel() || !doc_.model().IsRecord(s)) return;
    const ModelData& model = doc_.model();
    if ((filter == 0 || filter == 1) && model.HasPANI) {
        for (const PosKey& key : model.Sub(s).Pos.Keys)
            keyControl_->AddKey(key.Frame, "PANI");
    }
    if ((filter == 0 || filter == 2) && model.HasRANI) {
        for (const RotKey& key : model.Sub(s).Rot.Keys)
            keyControl_->AddKey(key.Frame, "RANI");
    }
    keyControl_->SelectKey(selected);
}

}  // namespace mw
