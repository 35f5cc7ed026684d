// The animation panel and the animation strip alone over a document on the sample ship: the
// hatch (6) has position keys at 0, 10 and 20, the turret (3) rotation keys at the same frames.
#include "editor/panels/animation_panel.h"

#include <gtest/gtest.h>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <utility>

#include "editor/animation_strip.h"
#include "editor/playback.h"
#include "editor/widgets/key_control.h"
#include "editor/widgets/spin_control.h"
#include "model/keys.h"
#include "support/sample_document.h"
#include "support/type_into.h"

namespace mw {
namespace {

using test::SavedBytes;
using test::TypeInto;

constexpr int kTurret = 3;
constexpr int kHatch = 6;

class AnimationPanelTest : public ::testing::Test {
  protected:
    AnimationPanelTest() : panel_(sample_.doc) { panel_.show(); }

    Document& doc() { return sample_.doc; }
    ModelData& model() { return sample_.doc.model(); }
    template <typename T>
    T* Find(const QString& name) {
        return panel_.findChild<T*>(name);
    }
    spinControl* Spin(const QString& name) { return Find<spinControl>(name); }
    void At(int s, float frame) {
        doc().SelectSubObject(s);
        doc().GoToFrame(frame);
    }
    // Runs an edit, checks it changed the saved bytes, and that undo brings them back.
    template <typename Edit>
    void ExpectUndoable(Edit edit) {
        const auto before = SavedBytes(model());
        edit();
        EXPECT_NE(SavedBytes(model()), before);
        doc().EndEditSession();
        doc().undoStack().undo();
        EXPECT_EQ(SavedBytes(model()), before);
    }

    test::SampleDocument sample_;
    AnimationPanel panel_;
};

TEST_F(AnimationPanelTest, ShowsTheKeysAtTheCurrentFrame) {
    At(kHatch, 10.6f);  // the whole frame counts
    EXPECT_TRUE(Find<QCheckBox>("chkKeyHasPANI")->isChecked());
    EXPECT_FALSE(Find<QCheckBox>("chkKeyHasRANI")->isChecked());
    EXPECT_EQ(Find<QLineEdit>("txtCurrentPANIKey")->text(), "1");
    EXPECT_FLOAT_EQ(Spin("txtKeyPosition_1")->Value(), 1.5f);
    EXPECT_TRUE(Spin("txtKeyPosition_1")->isEnabled());
    EXPECT_FALSE(Spin("txtKeyAngle")->isEnabled());
    EXPECT_EQ(Find<QLabel>("lblNumPANIKeys")->text(), "3");

    At(kTurret, 10.0f);
    EXPECT_TRUE(Find<QCheckBox>("chkKeyHasRANI")->isChecked());
    EXPECT_FLOAT_EQ(Spin("txtKeyAngle")->Value(), 90.0f);
    EXPECT_FLOAT_EQ(Spin("txtRotAxis_1")->Value(), 90.0f);  // axis (0, 1, 0): straight up
    EXPECT_FLOAT_EQ(Spin("txtKeyPosition_0")->Value(), 0.0f);
    EXPECT_TRUE(Find<QLineEdit>("txtCurrentPANIKey")->text().isEmpty());

    doc().SelectRoot();
    EXPECT_TRUE(Find<QLabel>("lblNumPANIKeys")->text().isEmpty());
    EXPECT_FALSE(Find<QCheckBox>("chkKeyHasPANI")->isEnabled());
    EXPECT_TRUE(Find<QPushButton>("cmdAllSubsToStart")->isEnabled());
    EXPECT_FALSE(Find<QPushButton>("cmdSubToStart")->isEnabled());
}

TEST_F(AnimationPanelTest, CheckBoxesAddAndRemoveKeys) {
    At(kHatch, 5.0f);
    ExpectUndoable([&] {
        Find<QCheckBox>("chkKeyHasPANI")->click();
        ASSERT_EQ(GetPANIindex(model(), kHatch, 5, true), 1);
        EXPECT_TRUE(Spin("txtKeyPosition_0")->isEnabled());
        EXPECT_EQ(Find<QLineEdit>("txtCurrentPANIKey")->text(), "1");
    });
    EXPECT_LT(GetPANIindex(model(), kHatch, 5, true), 0);
    At(kTurret, 10.0f);
    ExpectUndoable([&] {
        Find<QCheckBox>("chkKeyHasRANI")->click();
        EXPECT_LT(GetRANIindex(model(), kTurret, 10, true), 0);
        EXPECT_FALSE(Spin("txtKeyAngle")->isEnabled());
    });
}

TEST_F(AnimationPanelTest, PositionAngleAndAxisEditsAreStoredAndUndone) {
    At(kHatch, 10.0f);
    ExpectUndoable([&] {
        TypeInto(Spin("txtKeyPosition_2"), "-3.25");
        EXPECT_EQ(model().Sub(kHatch).Pos.Keys[1].Position, (Vector3{0, 1.5f, -3.25f}));
    });
    At(kTurret, 0.0f);
    ExpectUndoable([&] {
        TypeInto(Spin("txtKeyAngle"), "90");
        EXPECT_EQ(model().Sub(kTurret).Rot.Keys[0].Angle, 16384);
        TypeInto(Spin("txtKeyAngle"), "-0.01");
        EXPECT_EQ(model().Sub(kTurret).Rot.Keys[0].Angle, -2);  // -1.82 rounded
    });
    ExpectUndoable([&] {
        TypeInto(Spin("txtRotAxis_1"), "0");
        TypeInto(Spin("txtRotAxis_0"), "90");  // level, to the left: -x
        const Vector3 axis = model().Sub(kTurret).Rot.Keys[0].Axis;
        EXPECT_NEAR(axis.X, -1.0f, 1e-6f);
        EXPECT_NEAR(axis.Y, 0.0f, 1e-6f);
        EXPECT_NEAR(axis.Z, 0.0f, 1e-6f);
        EXPECT_FLOAT_EQ(Spin("txtRotAxis_0")->Value(), 90.0f);  // the typed angle stays
    });
}

TEST_F(AnimationPanelTest, MirrorYNegatesTheAxis) {
    At(kTurret, 10.0f);
    ExpectUndoable([&] {
        Find<QPushButton>("cmdMirror_1")->click();
        EXPECT_EQ(model().Sub(kTurret).Rot.Keys[1].Axis, (Vector3{0, -1, 0}));
        EXPECT_FLOAT_EQ(Spin("txtRotAxis_1")->Value(), -90.0f);
    });
}

TEST_F(AnimationPanelTest, SubToStartInsertsAKeyAtTheOrigin) {
    At(kHatch, 5.0f);
    ExpectUndoable([&] {
        Find<QPushButton>("cmdSubToStart")->click();
        const int k = GetPANIindex(model(), kHatch, 5, true);
        ASSERT_GE(k, 0);
        EXPECT_EQ(model().Sub(kHatch).Pos.Keys[static_cast<std::size_t>(k)].Position,
                  (Vector3{0, 0, 0}));
        EXPECT_TRUE(Find<QCheckBox>("chkKeyHasPANI")->isChecked());
    });
    ExpectUndoable([&] {
        Find<QPushButton>("cmdAllSubsToStart")->click();
        EXPECT_GE(GetRANIindex(model(), kTurret, 5, true), 0);
        EXPECT_EQ(doc().undoStack().count(), 1);  // one step for every sub-object
    });
}

TEST_F(AnimationPanelTest, KeyNavigationStopsAtTheFirstAndLastKey) {
    At(kHatch, 0.0f);
    auto* previous = Find<QPushButton>("cmdPreviousKeyFrame_0");
    auto* next = Find<QPushButton>("cmdNextKeyFrame_0");
    EXPECT_FALSE(previous->isEnabled());
    panel_.PreviousKeyFrame(0);  // even when called: nothing before the first key
    EXPECT_EQ(doc().animation().curFrame, 0.0f);
    next->click();
    EXPECT_EQ(doc().animation().curFrame, 10.0f);
    next->click();
    EXPECT_EQ(doc().animation().curFrame, 20.0f);
    EXPECT_FALSE(next->isEnabled());
    previous->click();
    EXPECT_EQ(doc().animation().curFrame, 10.0f);
    EXPECT_FALSE(Find<QPushButton>("cmdNextKeyFrame_1")->isEnabled());  // the hatch has no RANI
}

TEST_F(AnimationPanelTest, EditControlsAreOffWhilePlaying) {
    At(kTurret, 10.0f);
    doc().SetPlaying(true);
    for (const char* name : {"chkKeyHasPANI", "chkKeyHasRANI"}) {
        EXPECT_FALSE(Find<QCheckBox>(name)->isEnabled()) << name;
    }
    for (const char* name :
         {"cmdMirror_0", "cmdSubToStart", "cmdAllSubsToStart", "cmdNextKeyFrame_1"}) {
        EXPECT_FALSE(Find<QPushButton>(name)->isEnabled()) << name;
    }
    EXPECT_FALSE(Spin("txtKeyAngle")->isEnabled());
    panel_.Mirror(0);
    EXPECT_EQ(doc().undoStack().count(), 0);
    doc().GoToFrame(10.0f);  // stops
    EXPECT_TRUE(Spin("txtKeyAngle")->isEnabled());
}

// The strip with the range 0..60 and a clock the test drives.
class AnimationStripTest : public ::testing::Test {
  protected:
    AnimationStripTest() : strip_(sample_.doc), playback_(sample_.doc) {
        // The timer's own ticks between the test's steps see no time pass.
        playback_.SetClock([this] { return std::exchange(pending_, 0.0f); });
        TypeInto(Spin("txtFrameRange_1"), "60");
    }
    // One tick of the playback timer, `elapsed` seconds after the one before.
    void Step(float elapsed) {
        pending_ = elapsed;
        playback_.Tick();
    }
    Document& doc() { return sample_.doc; }
    const AnimationState& state() { return sample_.doc.animation(); }
    spinControl* Spin(const QString& name) { return strip_.findChild<spinControl*>(name); }
    QToolButton* PlayButton() { return strip_.findChild<QToolButton*>("cmdPlayStop"); }

    test::SampleDocument sample_;
    AnimationStrip strip_;
    Playback playback_;
    float pending_ = 0.0f;
};

TEST_F(AnimationStripTest, PlaysTheRangeInTheChosenTime) {
    EXPECT_EQ(state().endFrame, 60);
    EXPECT_EQ(strip_.timeline().maxFrame(), 60);
    PlayButton()->click();
    ASSERT_TRUE(state().animPlaying);
    EXPECT_EQ(PlayButton()->text(), "Stop");
    EXPECT_FALSE(strip_.findChild<QToolButton*>("cmdNextFrame")->isEnabled());
    Step(1.0f);  // 2 s for 60 frames: 30 frames a second
    EXPECT_FLOAT_EQ(state().curFrame, 30.0f);
    Step(0.5f);
    EXPECT_FLOAT_EQ(state().curFrame, 45.0f);
    EXPECT_EQ(strip_.timeline().label().text(), "45/60");
    EXPECT_FLOAT_EQ(Spin("txtCurrentFrame")->Value(), 45.0f);
    Step(1.0f);  // past the end without looping: stops exactly there
    EXPECT_FALSE(state().animPlaying);
    EXPECT_EQ(state().curFrame, 60.0f);
    EXPECT_EQ(PlayButton()->text(), "Play");
    EXPECT_TRUE(strip_.findChild<QToolButton*>("cmdNextFrame")->isEnabled());
    Step(1.0f);  // stopped: nothing moves
    EXPECT_EQ(state().curFrame, 60.0f);

    PlayButton()->click();  // Play at the end starts again
    EXPECT_EQ(state().curFrame, 0.0f);
    EXPECT_TRUE(state().animPlaying);
    PlayButton()->click();
    EXPECT_FALSE(state().animPlaying);
}

TEST_F(AnimationStripTest, LoopingRestartsAtTheStart) {
    strip_.findChild<QCheckBox*>("chkPlayContinuously")->click();
    PlayButton()->click();
    Step(5.0f / 3.0f);  // 50
    Step(0.5f);         // 65: 5 frames into the next pass
    EXPECT_NEAR(state().curFrame, 5.0f, 1e-4f);
    Step(5.0f);  // 155: more than one pass, back to the start
    EXPECT_EQ(state().curFrame, 0.0f);
    EXPECT_TRUE(state().animPlaying);
}

TEST_F(AnimationStripTest, RangeRules) {
    TypeInto(Spin("txtFrameRange_0"), "10");
    TypeInto(Spin("txtFrameRange_1"), "5");  // not above the start
    EXPECT_EQ(state().endFrame, 11);
    EXPECT_FLOAT_EQ(Spin("txtFrameRange_1")->Value(), 11.0f);
    TypeInto(Spin("txtFrameRange_0"), "30");  // not below the end
    EXPECT_EQ(state().startFrame, 10);
    EXPECT_EQ(state().endFrame, 11);
    EXPECT_EQ(strip_.timeline().minFrame(), 10);
    // The current frame is clamped into the range.
    EXPECT_FLOAT_EQ(Spin("txtCurrentFrame")->Min(), 10.0f);
    EXPECT_GE(state().curFrame, 10.0f);
    TypeInto(Spin("txtAnimateTime"), "0.5");
    EXPECT_FLOAT_EQ(state().animTime, 0.5f);

    const FrameRange fixed = CorrectFrameRange({4.6f, 2.0f}, 1);
    EXPECT_EQ(fixed.start, 5.0f);
    EXPECT_EQ(fixed.end, 6.0f);
}

TEST_F(AnimationStripTest, ADragOnTheTimelineIsOneUndoStep) {
    doc().SelectSubObject(kHatch);
    const auto before = SavedBytes(doc().model());
    keyControl& timeline = strip_.timeline();
    emit timeline.MoveKey(10, 11);
    emit timeline.MoveKey(11, 13);
    emit timeline.MoveKeyDone();
    EXPECT_GE(GetPANIindex(doc().model(), kHatch, 13, true), 0);
    EXPECT_TRUE(timeline.HasPANI(13));
    EXPECT_FALSE(timeline.HasPANI(10));
    EXPECT_EQ(doc().model().Sub(kHatch).Pos.Keys[1].Position.Y, 1.5f);  // the key's value moved
    EXPECT_EQ(doc().undoStack().count(), 1);
    doc().undoStack().undo();
    EXPECT_EQ(SavedBytes(doc().model()), before);
    EXPECT_TRUE(timeline.HasPANI(10));
}

TEST_F(AnimationStripTest, ALoadResetsTheRangeAndTheTimelineFollowsTheSelection) {
    doc().SelectSubObject(kHatch);
    EXPECT_TRUE(strip_.timeline().HasPANI(10));
    EXPECT_FALSE(strip_.timeline().HasRANI(10));
    doc().SetKeyFilter(2);
    emit doc().keysChanged(kHatch);
    EXPECT_FALSE(strip_.timeline().HasPANI(10));
    doc().SetKeyFilter(0);
    doc().ResetModel(true);
    EXPECT_EQ(state().endFrame, 20);
    EXPECT_EQ(strip_.timeline().maxFrame(), 20);
    EXPECT_FLOAT_EQ(Spin("txtFrameRange_1")->Value(), 20.0f);
    EXPECT_FALSE(strip_.timeline().HasPANI(10));  // nothing selected
    // The timeline's frame buttons and slider go through the document.
    strip_.timeline().NextFrame();
    EXPECT_EQ(state().curFrame, 1.0f);
}

}  // namespace
}  // namespace mw
