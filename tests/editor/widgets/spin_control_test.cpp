#include "editor/widgets/spin_control.h"

#include <gtest/gtest.h>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include "editor/widgets/number_format.h"

namespace mw {
namespace {

TEST(NumberFormatTest, ReadsTheFormatsThePanelsUse) {
    EXPECT_EQ(FormatNumber(3.14159, "####0.00"), "3.14");
    EXPECT_EQ(FormatNumber(-12345.5, "####0.00"), "-12345.50");
    EXPECT_EQ(FormatNumber(2.04, "#0.0"), "2.0");
    EXPECT_EQ(FormatNumber(7.6, "##0"), "8");
    EXPECT_EQ(FormatNumber(2.5, "##0.##"), "2.5");
    EXPECT_EQ(FormatNumber(3.0, "##0.##"), "3");
    EXPECT_EQ(FormatNumber(0.5, "0.00"), "0.50");
    EXPECT_EQ(FormatNumber(0.5, "#.00"), ".50");
    EXPECT_EQ(FormatNumber(-0.001, "0.00"), "0.00");  // no "-0.00"
    EXPECT_EQ(ParseTypedNumber("1,5"), 1.5);
    EXPECT_EQ(ParseTypedNumber("-2.25x"), -2.25);
    EXPECT_EQ(ParseTypedNumber("abc"), 0.0);
}

class SpinTest : public ::testing::Test {
  protected:
    SpinTest() {
        spin_.setFixedSize(90, 44);
        spin_.Configure(-90000, 90000, "####0.00", 0.01f, 2.0f);
        spin_.SetValue(5.0f);
        spin_.show();  // lays out the button pair over the full height
    }
    spinControl spin_;
};

TEST_F(SpinTest, TheTextHoldsTheFormatAndASign) {
    EXPECT_EQ(spin_.textBox().maxLength(), 9);
    spin_.SetRange(0, 90000);
    EXPECT_EQ(spin_.textBox().maxLength(), 8);
    EXPECT_EQ(spin_.text(), "5.00");
    spin_.SetMax(2);
    EXPECT_EQ(spin_.Value(), 2.0f);  // a new range clamps the value
}

TEST_F(SpinTest, AHeldButtonStepsOnceThenWaitsHalfASecondThenRepeats) {
    QSignalSpy change(&spin_, &spinControl::Change);
    spin_.PressButton(+1, 10);
    EXPECT_FLOAT_EQ(spin_.Value(), 5.01f);
    EXPECT_TRUE(spin_.repeating());
    for (int tick = 0; tick < 20; ++tick)  // 20 ticks of 25 ms: 500 ms
        spin_.RepeatTick();
    EXPECT_FLOAT_EQ(spin_.Value(), 5.01f);
    spin_.RepeatTick();
    EXPECT_FLOAT_EQ(spin_.Value(), 5.02f);
    spin_.RepeatTick();
    spin_.RepeatTick();
    EXPECT_FLOAT_EQ(spin_.Value(), 5.04f);
    EXPECT_EQ(change.count(), 4);

    QSignalSpy done(&spin_, &spinControl::ChangeDone);
    spin_.ReleaseButton();
    EXPECT_FALSE(spin_.repeating());
    EXPECT_EQ(done.count(), 1);
    spin_.RepeatTick();
    EXPECT_FLOAT_EQ(spin_.Value(), 5.04f);
}

TEST_F(SpinTest, DraggingGrowsWithThePowerOfTheDistance) {
    spin_.PressButton(-1, 20);  // the down button steps once
    EXPECT_FLOAT_EQ(spin_.Value(), 4.99f);
    spin_.DragTo(10);  // ten pixels up in one move: 10^2 x 0.01
    EXPECT_FLOAT_EQ(spin_.Value(), 5.99f);
    EXPECT_FALSE(spin_.repeating());  // a drag stops the repeat
    spin_.DragTo(20);
    EXPECT_NEAR(spin_.Value(), 4.99f, 1e-4);
    for (int y = 19; y >= 10; --y)  // ten moves of one pixel add only 0.1
        spin_.DragTo(y);
    EXPECT_NEAR(spin_.Value(), 5.09f, 1e-4);
    // At the top edge the pointer jumps to the bottom and the drag goes on from there.
    EXPECT_EQ(spin_.DragTo(0), 44 - 2);
    spin_.DragTo(40);
    EXPECT_NEAR(spin_.Value(), 5.13f, 1e-4);
    spin_.ReleaseButton();
}

TEST_F(SpinTest, TypingCommitsOnEnterAndClamps) {
    spin_.SetRange(0, 100);
    QLineEdit& box = spin_.textBox();
    box.selectAll();
    QTest::keyClicks(&box, "1x,5");  // letters are not taken
    EXPECT_EQ(box.text(), "1,5");
    QSignalSpy change(&spin_, &spinControl::Change);
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_FLOAT_EQ(spin_.Value(), 1.5f);
    EXPECT_EQ(box.text(), "1.50");
    EXPECT_EQ(box.selectedText(), "1.50");
    EXPECT_EQ(change.count(), 1);

    box.setText("250");
    QTest::keyClick(&box, Qt::Key_Enter);
    EXPECT_FLOAT_EQ(spin_.Value(), 100.0f);
    EXPECT_EQ(box.text(), "100.00");
    box.setText("-3");
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_FLOAT_EQ(spin_.Value(), 0.0f);

    // Whatever is typed is one change, also a text already in the shown form; Enter on the
    // text as shown is none.
    change.clear();
    box.setText("42.00");
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_FLOAT_EQ(spin_.Value(), 42.0f);
    EXPECT_EQ(change.count(), 1);
    box.setText("42");
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(box.text(), "42.00");
    EXPECT_EQ(change.count(), 2);
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(change.count(), 2);
}

}  // namespace
}  // namespace mw
