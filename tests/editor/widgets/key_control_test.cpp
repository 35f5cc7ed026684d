// The timeline widget alone: marks, the filter, the range, the label, frame stepping and
// mouse work on the key track and the slider.
#include "editor/widgets/key_control.h"

#include <gtest/gtest.h>
#include <QAccessible>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>

namespace mw {
namespace {

class KeyControlTest : public ::testing::Test {
  protected:
    KeyControlTest() {
        timeline_.resize(600, 44);
        timeline_.SetMinMax(0, 60);
    }
    // The control's point over a frame's mark (on the track's middle line).
    QPoint MarkPoint(int frame) const {
        const QRect track = timeline_.KeyTrackRect();
        return {track.left() + timeline_.FrameX(frame), track.center().y()};
    }
    void Press(QPoint at, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(&timeline_, button, Qt::NoModifier, at);
    }
    void DragTo(QPoint at) {
        QMouseEvent move(QEvent::MouseMove, at, timeline_.mapToGlobal(at), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&timeline_, &move);
    }
    keyControl timeline_;
};

TEST_F(KeyControlTest, TheFilterKeepsOutTheOtherKind) {
    timeline_.SetFilterKeys(1);
    timeline_.AddKey(10, "RANI");
    timeline_.AddKey(12, "PANI");
    EXPECT_FALSE(timeline_.HasRANI(10));
    EXPECT_TRUE(timeline_.HasPANI(12));
    EXPECT_EQ(timeline_.KeyAt(timeline_.FrameX(10)), -1);  // nothing to click
    timeline_.SetFilterKeys(2);
    timeline_.AddKey(14, "PANI");
    timeline_.AddKey(10, "RANI");
    EXPECT_FALSE(timeline_.HasPANI(14));
    EXPECT_TRUE(timeline_.HasRANI(10));
    timeline_.AddKey(1000, "PANI");  // beyond the track: ignored
    timeline_.DeleteKeys();
    EXPECT_FALSE(timeline_.HasRANI(10));
    EXPECT_FALSE(timeline_.HasPANI(12));
}

TEST_F(KeyControlTest, RangeLabelAndSingleFrameTrack) {
    timeline_.SetCurKeyFrame(12.7f);
    EXPECT_EQ(timeline_.label().text(), "12/60");
    // Assistive tools read the value with the label's caption.
    QAccessibleInterface* label = QAccessible::queryAccessibleInterface(&timeline_.label());
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(QAccessible::Name), "Timeline Frame: 12/60");
    EXPECT_EQ(timeline_.FrameX(60), timeline_.KeyTrackRect().width() - 1);
    EXPECT_EQ(timeline_.FrameX(90), timeline_.KeyTrackRect().width() - 1);  // clamped

    timeline_.SetMinMax(0, 0);  // no division by zero: every mark at the start
    EXPECT_EQ(timeline_.range(), 0);
    EXPECT_EQ(timeline_.FrameX(0), 0);
    EXPECT_EQ(timeline_.FrameX(5), 0);
    EXPECT_EQ(timeline_.SliderRect().left(), timeline_.SlideTrackRect().left());
    EXPECT_EQ(timeline_.label().text(), "12/0");
    timeline_.grab();  // paints without trouble
    QSignalSpy frames(&timeline_, &keyControl::FrameChange);
    timeline_.SetCurKeyFrame(0.0f);
    timeline_.NextFrame();  // the one frame wraps to itself
    timeline_.PrevFrame();
    EXPECT_EQ(frames.takeFirst().at(0).toInt(), 0);
    EXPECT_EQ(frames.takeFirst().at(0).toInt(), 0);
}

TEST_F(KeyControlTest, FrameButtonsWrapAtTheRangeEnds) {
    timeline_.SetMinMax(5, 9);
    QSignalSpy frames(&timeline_, &keyControl::FrameChange);
    timeline_.SetCurKeyFrame(9.4f);
    timeline_.NextFrame();
    EXPECT_EQ(timeline_.curKeyFrame(), 5.0f);
    timeline_.PrevFrame();
    EXPECT_EQ(timeline_.curKeyFrame(), 9.0f);
    timeline_.PrevFrame();
    EXPECT_EQ(timeline_.curKeyFrame(), 8.0f);
    ASSERT_EQ(frames.count(), 3);
    EXPECT_EQ(frames.at(2).at(0).toInt(), 8);
    EXPECT_EQ(timeline_.label().text(), "8/9");
}

TEST_F(KeyControlTest, ClickingSelectsAndDeletingTheSelectedKeyClearsIt) {
    timeline_.AddKey(20, "PANI");
    timeline_.AddKey(21, "RANI");  // marks 9 px apart on a 600 px track: nearest wins
    QSignalSpy clicks(&timeline_, &keyControl::KeyClick);
    Press(MarkPoint(21) + QPoint(-1, 0), Qt::RightButton);
    ASSERT_EQ(clicks.count(), 1);
    EXPECT_EQ(clicks.at(0).at(0).toInt(), 21);
    EXPECT_EQ(clicks.at(0).at(1).value<Qt::MouseButton>(), Qt::RightButton);
    EXPECT_EQ(timeline_.SelectedKeyFrame(), 21);
    EXPECT_EQ(timeline_.toolTip(), "Frame 21");
    timeline_.DeleteKey(20, "PANI");
    EXPECT_EQ(timeline_.SelectedKeyFrame(), 21);  // another key: the selection stays
    timeline_.DeleteKey(21, "RANI");
    EXPECT_EQ(timeline_.SelectedKeyFrame(), -1);

    timeline_.AddKey(30, "PANI");
    Press(MarkPoint(30));
    Press(MarkPoint(45));  // empty track: no key
    EXPECT_EQ(clicks.last().at(0).toInt(), -1);
    EXPECT_EQ(timeline_.SelectedKeyFrame(), -1);
}

TEST_F(KeyControlTest, DraggingAKeyMovesItUnlessTheTargetHoldsTheSameKind) {
    timeline_.AddKey(10, "PANI");
    timeline_.AddKey(30, "PANI");
    timeline_.AddKey(40, "RANI");
    QSignalSpy moves(&timeline_, &keyControl::MoveKey);
    QSignalSpy done(&timeline_, &keyControl::MoveKeyDone);
    Press(MarkPoint(10));   // select
    Press(MarkPoint(10));   // grab the selection marker
    DragTo(MarkPoint(30));  // a position key sits there: refused
    EXPECT_TRUE(moves.isEmpty());
    EXPECT_EQ(timeline_.SelectedKeyFrame(), 10);
    EXPECT_TRUE(timeline_.HasPANI(10));
    EXPECT_TRUE(timeline_.HasPANI(30));
    DragTo(MarkPoint(40));  // only a rotation key: the position key joins it
    ASSERT_EQ(moves.count(), 1);
    EXPECT_EQ(moves.at(0).at(0).toInt(), 10);
    EXPECT_EQ(moves.at(0).at(1).toInt(), 40);
    EXPECT_TRUE(timeline_.HasPANI(40));
    EXPECT_TRUE(timeline_.HasRANI(40));
    EXPECT_FALSE(timeline_.HasPANI(10));
    EXPECT_EQ(timeline_.SelectedKeyFrame(), 40);
    DragTo(MarkPoint(30));  // now both kinds: anything at the target refuses
    EXPECT_EQ(moves.count(), 1);
    DragTo(QPoint(timeline_.width() * 2, MarkPoint(0).y()));  // past the end: bounded to 60
    EXPECT_EQ(moves.last().at(1).toInt(), 60);
    QTest::mouseRelease(&timeline_, Qt::LeftButton, Qt::NoModifier, MarkPoint(60));
    EXPECT_EQ(done.count(), 1);
}

TEST_F(KeyControlTest, TheSliderSetsTheWholeFrameUnderIt) {
    QSignalSpy frames(&timeline_, &keyControl::FrameChange);
    const QRect slide = timeline_.SlideTrackRect();
    const int travel = slide.width() - keyControl::kSliderWidth;
    // The slider's left edge at a quarter of its travel: frame 15 of 0..60.
    const QPoint at(slide.left() + travel / 4 + keyControl::kSliderWidth / 2 + 1,
                    slide.center().y());
    Press(at);
    ASSERT_FALSE(frames.isEmpty());
    EXPECT_EQ(frames.last().at(0).toInt(), 15);
    EXPECT_EQ(timeline_.label().text(), "15/60");
    DragTo(QPoint(slide.right() + 50, at.y()));
    EXPECT_EQ(frames.last().at(0).toInt(), 60);
    EXPECT_EQ(timeline_.SliderRect().right(), slide.right());
}

}  // namespace
}  // namespace mw
