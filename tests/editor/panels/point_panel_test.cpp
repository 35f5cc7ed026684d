// The point panel alone over a document, and the vector dial it uses.
#include "editor/panels/point_panel.h"

#include <gtest/gtest.h>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include "editor/widgets/spin_control.h"
#include "editor/widgets/vector_control.h"
#include "model/point_direction.h"
#include "support/sample_document.h"
#include "support/type_into.h"

namespace mw {
namespace {

using test::SavedBytes;

TEST(VectorControlTest, ThePointerGivesTheAngleAndShiftSnapsIt) {
    const int w = 65, h = 65;  // centre (32, 32)
    EXPECT_DOUBLE_EQ(DialAngleAt(DialKind::LeftRight, 64, 32, w, h), 0.0);
    EXPECT_DOUBLE_EQ(DialAngleAt(DialKind::LeftRight, 32, 0, w, h), 90.0);
    EXPECT_DOUBLE_EQ(DialAngleAt(DialKind::LeftRight, 0, 32, w, h), 180.0);
    EXPECT_NEAR(DialAngleAt(DialKind::LeftRight, 0, 40, w, h), -165.96, 0.01);
    EXPECT_NEAR(DialAngleAt(DialKind::LeftRight, 22, 42, w, h), -135.0, 1e-9);
    // Left of the up/down dial's edge is straight up or straight down.
    EXPECT_DOUBLE_EQ(DialAngleAt(DialKind::UpDown, -3, 10, w, h), 90.0);
    EXPECT_DOUBLE_EQ(DialAngleAt(DialKind::UpDown, -3, 50, w, h), -90.0);
    EXPECT_NEAR(DialAngleAt(DialKind::UpDown, 20, 12, w, h), 45.0, 1e-9);

    EXPECT_EQ(SnapDialAngle(22.4), 0.0);
    EXPECT_EQ(SnapDialAngle(22.5), 45.0);
    EXPECT_EQ(SnapDialAngle(50.0), 45.0);
    EXPECT_EQ(SnapDialAngle(57.5), 90.0);  // not 67.5
    EXPECT_EQ(SnapDialAngle(-60.0), -90.0);
    EXPECT_EQ(SnapDialAngle(-112.5), -135.0);
    EXPECT_EQ(SnapDialAngle(157.5), 180.0);
}

TEST(VectorControlTest, TheLineRunsFromTheCentreTowardsTheAngle) {
    EXPECT_EQ(DialLineStart(DialKind::LeftRight, 65, 65), QPointF(32, 32));
    EXPECT_EQ(DialLineStart(DialKind::UpDown, 65, 65), QPointF(0, 32));
    const QPointF up = DialLineEnd(DialKind::LeftRight, 90, 65, 65);
    EXPECT_NEAR(up.x(), 32, 1e-9);
    EXPECT_NEAR(up.y(), 0, 1e-9);
    const QPointF level = DialLineEnd(DialKind::UpDown, 0, 65, 65);
    EXPECT_NEAR(level.x(), 64, 1e-9);
    EXPECT_NEAR(level.y(), 32, 1e-9);
}

class PointPanelTest : public ::testing::Test {
  protected:
    PointPanelTest() : panel_(sample_.doc) { panel_.show(); }

    Document& doc() { return sample_.doc; }
    spinControl* Spin(const char* name) { return panel_.findChild<spinControl*>(name); }
    VectorControl* Dial(int i) {
        return panel_.findChild<VectorControl*>(QString("picPointAngle_%1").arg(i));
    }
    void Type(const char* name, const char* text) { test::TypeInto(Spin(name), text); }
    // A press at an angle a radius of 30 pixels from the dial's centre, optionally dragged.
    void DragDial(int i, double degrees, Qt::KeyboardModifiers modifiers) {
        VectorControl* dial = Dial(i);
        const QPointF centre = DialLineStart(dial->kind(), dial->width(), dial->height());
        const double a = degrees * 3.14159265358979 / 180.0;
        const QPoint at(static_cast<int>(std::lround(centre.x() + 30 * std::cos(a))),
                        static_cast<int>(std::lround(centre.y() - 30 * std::sin(a))));
        QTest::mousePress(dial, Qt::LeftButton, modifiers, at - QPoint(0, 2));
        QTest::mouseMove(dial, at);
        QMouseEvent move(QEvent::MouseMove, at, dial->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                         modifiers);
        QApplication::sendEvent(dial, &move);
        QTest::mouseRelease(dial, Qt::LeftButton, modifiers, at);
    }
    const ModelPoint& Point(PointType type, int i) {
        return doc().model().Points(type)[static_cast<std::size_t>(i)];
    }

    test::SampleDocument sample_;
    PointPanel panel_;
};

TEST_F(PointPanelTest, ShowsThePointsTypeLocationAndAngles) {
    doc().model().GunPoints[1].Normal = {0, 1, 0};
    doc().model().AttachPoints[0].Normal = {0, 0, -1};
    doc().SelectPoint(PointType::GPNT, 1);
    EXPECT_EQ(panel_.findChild<QLabel*>("lblPointType")->text(), "Gunpoint Properties");
    EXPECT_FLOAT_EQ(Spin("txtPointLoc_0")->Value(), 1.0f);
    EXPECT_FLOAT_EQ(Spin("txtPointLoc_2")->Value(), 1.2f);
    EXPECT_FLOAT_EQ(Spin("txtPointAngle_1")->Value(), 90.0f);
    EXPECT_FLOAT_EQ(Spin("txtPointAngle_0")->Value(), 0.0f);
    EXPECT_DOUBLE_EQ(Dial(1)->angle(), 90.0);
    doc().SelectPoint(PointType::ATCH, 0);
    EXPECT_EQ(panel_.findChild<QLabel*>("lblPointType")->text(), "Attach Point Properties");
    EXPECT_FLOAT_EQ(Spin("txtPointAngle_0")->Value(), 180.0f);
    EXPECT_FLOAT_EQ(Spin("txtPointAngle_1")->Value(), 0.0f);
    doc().SelectPoint(PointType::GRND, 2);
    EXPECT_EQ(panel_.findChild<QLabel*>("lblPointType")->text(), "Ground Point Properties");
    EXPECT_EQ(doc().undoStack().count(), 0);  // showing never edits
}

TEST_F(PointPanelTest, TypedLocationsAndAnglesAreOneUndoStepEach) {
    doc().SelectPoint(PointType::GPNT, 0);
    const auto before = SavedBytes(doc().model());
    Type("txtPointLoc_1", "2.5");
    EXPECT_FLOAT_EQ(Point(PointType::GPNT, 0).Position.Y, 2.5f);
    EXPECT_FLOAT_EQ(Point(PointType::GPNT, 0).Position.X, -1.0f);
    Type("txtPointAngle_1", "30");
    const Vector3 n = Point(PointType::GPNT, 0).Normal;
    EXPECT_NEAR(n.Y, 0.5f, 1e-6f);
    EXPECT_NEAR(n.Z, 0.8660254f, 1e-6f);
    EXPECT_EQ(doc().undoStack().count(), 2);
    // Typing 180 into L/R turns it into -180, the same direction.
    Type("txtPointAngle_0", "180");
    EXPECT_FLOAT_EQ(Spin("txtPointAngle_0")->Value(), -180.0f);
    EXPECT_NEAR(Point(PointType::GPNT, 0).Normal.Z, -0.8660254f, 1e-6f);
    Type("txtPointAngle_0", "-180");
    EXPECT_FLOAT_EQ(Spin("txtPointAngle_0")->Value(), 180.0f);
    // The angles stay as typed; they are not read back from the stored direction.
    EXPECT_FLOAT_EQ(Spin("txtPointAngle_1")->Value(), 30.0f);
    while (doc().undoStack().canUndo())
        doc().undoStack().undo();
    EXPECT_EQ(SavedBytes(doc().model()), before);
    EXPECT_FLOAT_EQ(Spin("txtPointLoc_1")->Value(), 0.0f);  // undo refills the panel
}

TEST_F(PointPanelTest, ShiftDraggingInTheDialsSnaps) {
    doc().SelectPoint(PointType::NATH, 0);
    const auto before = SavedBytes(doc().model());
    DragDial(0, 60, Qt::ShiftModifier);
    EXPECT_FLOAT_EQ(Spin("txtPointAngle_0")->Value(), 90.0f);
    EXPECT_NEAR(Point(PointType::NATH, 0).Normal.X, -1.0f, 1e-6f);
    DragDial(0, 50, Qt::ShiftModifier);
    EXPECT_FLOAT_EQ(Spin("txtPointAngle_0")->Value(), 45.0f);
    // Shift with Ctrl does not snap.
    DragDial(0, 50, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_NEAR(Spin("txtPointAngle_0")->Value(), 50.0f, 1.5f);
    EXPECT_NE(Spin("txtPointAngle_0")->Value(), 45.0f);
    DragDial(1, 60, Qt::ShiftModifier);
    EXPECT_FLOAT_EQ(Spin("txtPointAngle_1")->Value(), 90.0f);
    EXPECT_NEAR(Point(PointType::NATH, 0).Normal.Y, 1.0f, 1e-6f);
    // A press and a drag are one step each.
    EXPECT_EQ(doc().undoStack().count(), 4);
    while (doc().undoStack().canUndo())
        doc().undoStack().undo();
    EXPECT_EQ(SavedBytes(doc().model()), before);
}

}  // namespace
}  // namespace mw
