// The animation panel, the strip and the key menu in the editor window on the sample ship.
#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QAccessible>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QToolButton>
#include <algorithm>

#include "editor/animation_strip.h"
#include "editor/key_commands.h"
#include "editor/key_menu.h"
#include "editor/panels/panel_host.h"
#include "editor/playback.h"
#include "editor/widgets/key_control.h"
#include "editor/widgets/spin_control.h"
#include "model/keys.h"
#include "support/editor_window.h"
#include "support/sample_document.h"

namespace mw {
namespace {

using AnimationWindowTest = EditorTest;

TEST_F(AnimationWindowTest, KeyMenuCopiesAndPastesThroughTheClipboard) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    keyControl& timeline = Part<AnimationStrip>().timeline();
    KeyMenu& keys = Part<KeyMenu>();
    QMenu* menu = Part<MainActions>().menu("mnuAnimation");
    emit menu->aboutToShow();
    EXPECT_FALSE(Action("mnuAnimationCut")->isEnabled());  // nothing selected
    EXPECT_FALSE(Action("mnuAnimationPaste")->isEnabled());

    // The hatch (6): Copy All over the range 5..20 holds its keys at 10 and 20 as 5 and 15.
    doc().SelectSubObject(6);
    auto* start = Part<AnimationStrip>().findChild<spinControl*>("txtFrameRange_0");
    start->SetValue(5.0f);
    ASSERT_EQ(timeline.minFrame(), 5);
    emit menu->aboutToShow();
    EXPECT_TRUE(Action("mnuCopyAllKeys")->isEnabled());
    EXPECT_FALSE(Action("mnuCopyKey")->isEnabled());  // no key selected on the timeline
    Action("mnuCopyAllKeys")->trigger();
    ASSERT_TRUE(keys.clipboard().allKeysHeld);
    ASSERT_EQ(keys.clipboard().AllPositions.size(), 2u);

    // Pasted on the turret at 40 (the range end moved out first): keys at 45 and 55, one step.
    Part<AnimationStrip>().findChild<spinControl*>("txtFrameRange_1")->SetValue(100.0f);
    doc().SelectSubObject(3);
    doc().GoToFrame(40.0f);
    const auto before = test::SavedBytes(doc().model());
    emit menu->aboutToShow();
    ASSERT_TRUE(Action("mnuPasteAllKeys")->isEnabled());
    const int steps = doc().undoStack().count();
    Action("mnuPasteAllKeys")->trigger();
    EXPECT_EQ(doc().undoStack().count(), steps + 1);
    EXPECT_GE(GetPANIindex(doc().model(), 3, 45, true), 0);
    EXPECT_GE(GetPANIindex(doc().model(), 3, 55, true), 0);
    EXPECT_TRUE(timeline.HasPANI(45));
    doc().undoStack().undo();
    EXPECT_EQ(test::SavedBytes(doc().model()), before);

    // With the filter on "Positional", Copy Key of the turret's frame 10 holds no rotation.
    doc().GoToFrame(0.0f);
    Action("mnuFilter_1")->trigger();
    EXPECT_FALSE(timeline.HasRANI(10));
    Action("mnuFilter_0")->trigger();
    timeline.SelectKey(10);
    Action("mnuFilter_1")->trigger();  // reloads; the turret's key at 10 is a rotation key
    EXPECT_EQ(timeline.SelectedKeyFrame(), -1);
    Action("mnuFilter_0")->trigger();
    timeline.SelectKey(10);
    emit menu->aboutToShow();
    EXPECT_TRUE(Action("mnuCutKey")->isEnabled());
    // Both kinds at 10; the positional filter copies only the position key.
    doc().Apply(MakeKeyPresenceCommand(doc(), 3, 10, KeyKind::Position, true));
    doc().SetKeyFilter(1);
    keys.CopyKey();
    EXPECT_TRUE(keys.clipboard().singleKeyHeld);
    EXPECT_TRUE(keys.clipboard().Position);
    EXPECT_FALSE(keys.clipboard().Rotation);
    doc().SetKeyFilter(0);
    keys.CutKey();
    EXPECT_LT(GetRANIindex(doc().model(), 3, 10, true), 0);
    EXPECT_LT(GetPANIindex(doc().model(), 3, 10, true), 0);
    EXPECT_FALSE(timeline.HasRANI(10));
    EXPECT_EQ(keys.clipboard().Rotation->Angle, 16384);
    doc().undoStack().undo();
    EXPECT_GE(GetRANIindex(doc().model(), 3, 10, true), 0);
    EXPECT_TRUE(keys.clipboard().Rotation);  // undo leaves the clipboard alone
}

TEST_F(AnimationWindowTest, RightClickOnTheTimelinePopsUpTheMenuWithoutItsViewItems) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    doc().SelectSubObject(6);
    keyControl& timeline = Part<AnimationStrip>().timeline();
    const QRect track = timeline.KeyTrackRect();
    QMenu* menu = Part<MainActions>().menu("mnuAnimation");
    QTest::mousePress(&timeline, Qt::RightButton, Qt::NoModifier,
                      QPoint(track.left() + timeline.FrameX(10), track.center().y()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return menu->isVisible(); }));
    EXPECT_EQ(timeline.SelectedKeyFrame(), 10);
    EXPECT_FALSE(Action("mnuViewTrajectories")->isVisible());
    EXPECT_FALSE(Action("mnuViewRotator")->isVisible());
    EXPECT_TRUE(Action("mnuCopyKey")->isEnabled());
    menu->hide();
    EXPECT_TRUE(Action("mnuViewTrajectories")->isVisible());
}

TEST_F(AnimationWindowTest, PlaybackRunsOnTheViewportTimer) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    // A tick that takes long and spins the event loop does not start a second one.
    int depth = 0, deepest = 0;
    QObject::connect(&Part<Playback>(), &Playback::ticked, [&] {
        deepest = std::max(deepest, ++depth);
        QTest::qWait(5);
        --depth;
    });
    window_->findChild<QToolButton*>("cmdPlayStop")->click();
    ASSERT_TRUE(doc().animation().animPlaying);
    EXPECT_TRUE(QTest::qWaitFor([&] { return doc().animation().curFrame > 1.0f; }));
    EXPECT_EQ(deepest, 1);
    // The trajectories and the posed sub-objects follow the frame: pictures differ.
    doc().GoToFrame(0.0f);
    const QImage first = ViewportImage();
    doc().GoToFrame(10.0f);
    EXPECT_NE(ViewportImage(), first);
    EXPECT_FALSE(doc().animation().animPlaying);
}

TEST_F(AnimationWindowTest, EveryControlHasAnAccessibleName) {
    ShowTab("Animation");
    // The panel's view switches and the menu's are the same.
    QWidget* panel = panels().FindPanel("Animation");
    panel->findChild<QAbstractButton*>("chkViewTrajectories")->click();
    EXPECT_EQ(Action("mnuViewTrajectories")->isChecked(), doc().display().ViewTrajectories);
    Action("mnuViewRotator")->trigger();
    EXPECT_EQ(panel->findChild<QAbstractButton*>("chkViewRotators")->isChecked(),
              doc().display().RotatorAnimation);
    for (QWidget* root :
         {panels().FindPanel("Animation"), static_cast<QWidget*>(&Part<AnimationStrip>())}) {
        for (QWidget* w : root->findChildren<QWidget*>()) {
            if (qobject_cast<QAbstractButton*>(w) == nullptr &&
                qobject_cast<QLineEdit*>(w) == nullptr && qobject_cast<keyControl*>(w) == nullptr)
                continue;
            ExpectAccessibleName(w);
        }
    }
}

// At the size the window starts with (also its smallest), the animation panel is taller than
// its area: it scrolls, and the scroll bar shows.
TEST_F(AnimationWindowTest, TheAnimationPanelScrollsInTheSmallestWindow) {
    window_->resize(1100, 760);
    ASSERT_TRUE(window_->LoadModel(kShip));
    ShowTab("Animation");
    doc().SelectSubObject(3);
    QTest::qWait(50);
    auto* area = window_->findChild<QScrollArea*>("picTabMain");
    ASSERT_NE(area, nullptr);
    EXPECT_TRUE(area->verticalScrollBar()->isVisible());
    EXPECT_GT(area->verticalScrollBar()->maximum(), 0);
    // The controls at the bottom are reached by scrolling (as keyboard focus does).
    QWidget* panel = panels().FindPanel("Animation");
    QWidget* last = nullptr;
    for (QWidget* w : panel->findChildren<QWidget*>()) {
        if (w->focusPolicy() != Qt::NoFocus &&
            (last == nullptr || w->mapTo(panel, QPoint()).y() > last->mapTo(panel, QPoint()).y()))
            last = w;
    }
    ASSERT_NE(last, nullptr);
    area->ensureWidgetVisible(last);
    QApplication::processEvents();
    EXPECT_GT(area->verticalScrollBar()->value(), 0);
    if (const QString shot = ScreenshotPath("editor-small-animation.png"); !shot.isEmpty()) {
        EXPECT_TRUE(WindowImage().save(shot));
    }
}

// Tab from the tab strip reaches every control of the shown panel and of the strip, the
// panel's before the strip's.
TEST_F(AnimationWindowTest, TabReachesEveryControlInOrder) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    ShowTab("Animation");
    doc().SelectSubObject(3);
    window_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    panels().tabs().setFocus();
    QWidget* panel = panels().FindPanel("Animation");
    QWidget* strip = &Part<AnimationStrip>();
    std::vector<QWidget*> visited;
    for (int i = 0; i < 200; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QWidget* w = QApplication::focusWidget();
        if (!visited.empty() && w == visited.front()) break;
        visited.push_back(w);
    }
    auto position = [&visited](QWidget* w) {
        return std::find(visited.begin(), visited.end(), w) - visited.begin();
    };
    std::ptrdiff_t lastInPanel = -1;
    std::ptrdiff_t firstInStrip = static_cast<std::ptrdiff_t>(visited.size());
    for (QWidget* root : {panel, strip}) {
        for (QWidget* w : root->findChildren<QWidget*>()) {
            if (!(w->focusPolicy() & Qt::TabFocus) || !w->isVisibleTo(window_.get()) ||
                !w->isEnabled() || w->focusProxy() != nullptr)
                continue;
            const auto at = position(w);
            EXPECT_LT(at, static_cast<std::ptrdiff_t>(visited.size()))
                << w->objectName().toStdString() << " is never reached";
            if (root == panel) lastInPanel = std::max(lastInPanel, at);
            if (root == strip) firstInStrip = std::min(firstInStrip, at);
        }
    }
    EXPECT_LT(lastInPanel, firstInStrip);
}

TEST_F(AnimationWindowTest, Screenshot) {
    if (ScreenshotPath("x").isEmpty()) GTEST_SKIP() << "set MW_SCREENSHOT_DIR to take them";
    window_->resize(1100, 800);
    ASSERT_TRUE(window_->LoadModel(kShip));
    ShowTab("Animation");
    doc().SelectSubObject(3);
    doc().SetDisplayFlag(&DisplaySettings::ViewTrajectories, true);
    doc().GoToFrame(10.0f);
    Part<AnimationStrip>().timeline().SelectKey(10);
    QTest::qWait(100);
    EXPECT_TRUE(WindowImage().save(ScreenshotPath("editor-animation.png")));

    // A strip of the ship's animation with the hatch's trajectory: frames 0 to 20 in steps
    // of 5, each the middle of the viewport.
    doc().SetViewType(ViewType::Textured);
    doc().SelectSubObject(6);
    const int frames[] = {0, 5, 10, 15, 20};
    const QSize cell(320, 240);
    QImage strip(cell.width() * 5, cell.height(), QImage::Format_RGB32);
    QPainter painter(&strip);
    for (int i = 0; i < 5; ++i) {
        doc().GoToFrame(static_cast<float>(frames[i]));
        QTest::qWait(30);
        const QImage view = ViewportImage().convertToFormat(QImage::Format_RGB32);
        const QSize middle(view.width() * 11 / 20, view.width() * 11 / 20 * 3 / 4);
        const QRect crop(
            QPoint((view.width() - middle.width()) / 2, (view.height() - middle.height()) / 2),
            middle);
        painter.drawImage(QRect(QPoint(i * cell.width(), 0), cell), view, crop);
        painter.setPen(Qt::white);
        painter.drawText(QRect(i * cell.width() + 8, 6, 120, 20),
                         QString("Frame %1").arg(frames[i]));
    }
    painter.end();
    EXPECT_TRUE(strip.save(ScreenshotPath("animation-strip.png")));  // docs/help/
}

}  // namespace
}  // namespace mw
