// The editor window on the sample model, under a real (virtual) X display.
#include "editor/main_window.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QTabBar>
#include <QTest>
#include <QToolBar>
#include <QTreeWidget>
#include <cstdlib>
#include <fstream>

#include "editor/actions.h"
#include "editor/document.h"
#include "editor/edit_commands.h"
#include "editor/file_commands.h"
#include "editor/model_textures.h"
#include "editor/panels/panel_host.h"
#include "editor/recent_files.h"
#include "editor/tree/tree_control.h"
#include "editor/viewport.h"
#include "support/editor_window.h"
#include "support/sample_document.h"
#include "support/scripted_prompts.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

TEST_F(EditorTest, OpensTheSampleTexturedAndPicksItsParts) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    QTest::qWait(50);
    EXPECT_TRUE(doc().modelReady());
    for (const auto& r : Part<ModelTextures>().loaded().Resolved)
        EXPECT_TRUE(r.Decoded);

    // Find a grey pixel of the hull (its texture) by picking over a grid; a corner picks
    // nothing.
    Viewport& view = viewport();
    const QImage image = ViewportImage();
    EXPECT_EQ(view.PickAt(3, 3), -1);
    int hx = -1, hy = -1;
    for (int y = view.height() / 4; y < view.height() * 3 / 4 && hx < 0; y += 12) {
        for (int x = view.width() / 4; x < view.width() * 3 / 4 && hx < 0; x += 12) {
            const QColor c = image.pixelColor(x + 1, y + 1);
            const bool grey = c.red() + c.green() + c.blue() > 60 &&
                              std::abs(c.red() - c.blue()) < 40 &&
                              std::abs(c.red() - c.green()) < 40;
            if (grey && view.PickAt(x, y) == 0 && view.PickAt(x + 3, y + 3) == 0) hx = x, hy = y;
        }
    }
    ASSERT_GE(hx, 0) << "no grey pixel of the hull found";

    doc().SelectSubObject(0);
    EXPECT_EQ(doc().selection().hiliteSOBJ, 0);
    const QColor highlighted = ViewportImage().pixelColor(hx + 1, hy + 1);
    EXPECT_GT(highlighted.red(), highlighted.green() + 20);  // LightMagenta, untextured
    EXPECT_GT(highlighted.blue(), highlighted.green() + 20);
}

TEST_F(EditorTest, ADropInTheViewportIsOneUndoableStep) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    const auto before = test::SavedBytes(doc().model());
    const int lists = viewport().renderer().ListBuilds();
    doc().SelectSubObject(4);  // the radar, a child of the turret (3)
    viewport().HoverSubObject(3);
    viewport().DropSubObject(true, false);  // onto its own parent: nothing to do
    EXPECT_EQ(doc().undoStack().count(), 0);

    doc().SelectSubObject(3);
    viewport().HoverSubObject(4);
    viewport().DropSubObject(true, false);  // onto its own child: refused
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_EQ(prompts_.messages[0].text, "You can not make a Sub-Object a child of its children");

    doc().SelectSubObject(4);
    viewport().HoverSubObject(1);  // over the left wing
    viewport().DropSubObject(true, false);
    EXPECT_EQ(doc().model().Sub(4).Parent, 1);
    EXPECT_EQ(doc().selection().curSOBJ, 4);
    EXPECT_EQ(viewport().renderer().ListBuilds(), lists);  // no mesh changed
    EXPECT_EQ(Action("mnuEditUndo")->text(), "Undo Change Parent");
    EXPECT_TRUE(window_->isWindowModified());
    EXPECT_EQ(window_->windowTitle(), "ship.oof[*] - Meshwright");

    Action("mnuEditUndo")->trigger();
    EXPECT_EQ(test::SavedBytes(doc().model()), before);
    EXPECT_FALSE(window_->isWindowModified());
    EXPECT_EQ(Action("mnuEditRedo")->text(), "Redo Change Parent");
}

TEST_F(EditorTest, EveryMenuItemHasItsCaptionAndShortcut) {
    const std::vector<std::tuple<const char*, const char*, const char*>> items{
        {"mnuLoadOOFORF", "&Open OOF/ORF...", "Ctrl+O"},
        {"mnuFileSaveOOF", "&Save OOF", "Ctrl+S"},
        {"mnuFileSaveOOFAs", "Save OOF As...", ""},
        {"mnuFileImportP3D", "Import P3D...", ""},
        {"mnuFileExportORF", "Export ORF...", ""},
        {"mnuFilePreferences", "&Preferences...", "Ctrl+P"},
        {"mnuMRUPaths_0", "&1", "F1"},
        {"mnuMRUPaths_8", "&9", "F9"},
        {"mnuFileExit", "E&xit", "Ctrl+X"},
        {"mnuEditUndo", "Undo", "Ctrl+Z"},
        {"mnuEditRedo", "Redo", "Ctrl+Shift+Z"},
        {"mnuEditDelete", "Delete", "Del"},
        {"mnuEditConvert", "Convert to", ""},
        {"mnuEditPoint_0", "&Attach Point", "Ctrl+A"},
        {"mnuEditPoint_1", "Attach &Normal", "Ctrl+N"},
        {"mnuEditPoint_2", "G&round Point", "Ctrl+R"},
        {"mnuEditPoint_3", "&Gunpoint", "Ctrl+G"},
        {"mnuRecalcVertNormals", "Recalculate Normals", ""},
        {"mnuToolsScale", "Scale Model...", ""},
        {"mnuToolsCheck", "Check Model...", ""},
        {"mnuViewMode_0", "Selection", ""},
        {"mnuViewMode_3", "Pan", ""},
        {"mnuViewType_0", "Wireframe", ""},
        {"mnuViewType_1", "Flat Colored", ""},
        {"mnuViewType_2", "Smooth Colored", ""},
        {"mnuViewType_3", "Textured", ""},
        {"mnuView3D", "3-D Mode", ""},
        {"mnuAnimationCut", "Cut", ""},
        {"mnuCutKey", "Key", ""},
        {"mnuPasteAllKeys", "All Keys", ""},
        {"mnuFilter_1", "Positional", ""},
        {"mnuViewRotator", "View Rotator Animation", ""},
        {"mnuViewTrajectories", "View Trajectories", ""},
        {"mnuViewPoints", "Special Points", ""},
        {"mnuViewNormals", "Normals", ""},
        {"mnuViewFacing", "Facing", ""},
        {"mnuViewGlow", "Glow Effects", ""},
        {"mnuViewTexAnimate", "Texture Animation", ""},
        {"mnuViewFiltering", "Bilinear Filtering", ""},
        {"mnuViewBackground", "Show Background", ""},
        {"mnuHelpContents", "Help Contents...", ""},
        {"mnuAbout", "About Meshwright...", ""},
    };
    for (const auto& [name, caption, keys] : items) {
        QAction* a = Action(name);
        ASSERT_NE(a, nullptr) << name;
        EXPECT_EQ(a->text(), caption) << name;
        EXPECT_EQ(a->shortcut().toString(), keys) << name;
    }
    QStringList bar;
    for (QAction* a : window_->menuBar()->actions())
        bar << a->text();
    EXPECT_EQ(bar, (QStringList{"File", "Edit", "Tools", "Animation", "Display", "Help"}));
    EXPECT_EQ(Part<MainActions>().menu("mnuViewModeMain")->title(), "Mode");
    EXPECT_EQ(Part<MainActions>().menu("mnuViewTypeMain")->title(), "View");
    EXPECT_EQ(Part<MainActions>().menu("mnuViewEffects")->title(), "Effects");
    EXPECT_EQ(Part<MainActions>().menu("mnuKeyFilter")->title(), "Filter Keys");
    EXPECT_FALSE(Action("mnuMRUPaths_0")->isVisible());
}

TEST_F(EditorTest, ToolBarButtonsHaveTipsIconsAndNames) {
    const std::vector<std::pair<const char*, const char*>> buttons{
        {"open", "Open OOF/ORF..."},
        {"save", "Save OOF"},
        {"preferences", "Preferences"},
        {"select", "Select"},
        {"zoom", "Zoom"},
        {"rotate", "Rotate"},
        {"pan", "Pan"},
        {"wireframe", "Wireframe View"},
        {"flatcolor", "Flat Colored View"},
        {"smoothcolor", "Smooth Colored View"},
        {"textured", "Textured View"},
        {"threed", "3-D Mode Toggle"},
        {"viewpoints", "Show Special Points"},
        {"viewnormals", "Show Normals"},
    };
    QToolBar& bar = Part<MainActions>().toolBar();
    for (const auto& [key, tip] : buttons) {
        QAction* a = Action(key);
        ASSERT_NE(a, nullptr) << key;
        EXPECT_EQ(a->toolTip(), tip) << key;
        EXPECT_FALSE(a->icon().isNull()) << key;
        QWidget* button = bar.widgetForAction(a);
        ASSERT_NE(button, nullptr) << key;
        EXPECT_EQ(button->accessibleName(), tip) << key;
    }
    // The mode and view-type buttons follow the menus and the other way round.
    Action("zoom")->trigger();
    EXPECT_EQ(doc().display().Mode, ViewMode::Zoom);
    EXPECT_TRUE(Action("mnuViewMode_1")->isChecked());
    Action("mnuViewType_0")->trigger();
    EXPECT_TRUE(Action("wireframe")->isChecked());
    EXPECT_FALSE(Action("textured")->isChecked());
    const bool points = Action("viewpoints")->isChecked();
    Action("mnuViewPoints")->trigger();
    EXPECT_NE(Action("viewpoints")->isChecked(), points);
    EXPECT_NE(doc().display().ViewPoints, points);
    EXPECT_EQ(Part<MainActions>().hogList().objectName(), "cboHOG");
}

TEST_F(EditorTest, CommandsNeedAModelAndASelection) {
    for (const char* name : {"mnuFileSaveOOF", "mnuFileSaveOOFAs", "mnuFileExportORF", "save",
                             "mnuRecalcVertNormals", "mnuToolsScale", "mnuToolsCheck"}) {
        EXPECT_FALSE(Action(name)->isEnabled()) << name;
    }
    EXPECT_FALSE(Action("mnuFileImportP3D")->isEnabled());  // no compiler set
    ASSERT_TRUE(window_->LoadModel(kShip));
    for (const char* name : {"mnuFileSaveOOF", "mnuFileSaveOOFAs", "mnuFileExportORF", "save",
                             "mnuRecalcVertNormals", "mnuToolsScale", "mnuToolsCheck"}) {
        EXPECT_TRUE(Action(name)->isEnabled()) << name;
    }

    OpenEditMenu();
    EXPECT_FALSE(Action("mnuEditDelete")->isEnabled());
    EXPECT_FALSE(Action("mnuEditConvert")->isEnabled());

    doc().SelectSubObject(0);  // the only top-level sub-object
    OpenEditMenu();
    EXPECT_FALSE(Action("mnuEditDelete")->isEnabled());
    EXPECT_FALSE(Action("mnuEditConvert")->isEnabled());

    doc().SelectPoint(PointType::GPNT, 1);
    OpenEditMenu();
    EXPECT_TRUE(Action("mnuEditDelete")->isEnabled());
    EXPECT_TRUE(Action("mnuEditPoint_0")->isEnabled());
    EXPECT_FALSE(Action("mnuEditPoint_3")->isEnabled());

    // Delete through its menu item: the point goes, its sub-object is selected.
    Action("mnuEditDelete")->trigger();
    EXPECT_EQ(doc().model().GunPoints.size(), 2u);
    EXPECT_EQ(doc().selection().curSOBJ, 2);
    EXPECT_EQ(Action("mnuEditUndo")->text(), "Undo Delete");

    // With 64 gun points, Gunpoint is not offered; the others are.
    doc().model().GunPoints.resize(kMaxGunPoints);
    doc().SelectSubObject(6);
    OpenEditMenu();
    EXPECT_TRUE(Action("mnuEditConvert")->isEnabled());
    EXPECT_TRUE(Action("mnuEditPoint_2")->isEnabled());
    EXPECT_FALSE(Action("mnuEditPoint_3")->isEnabled());
    Action("mnuEditPoint_3")->trigger();  // its shortcut while disabled does nothing
    EXPECT_EQ(doc().selection().curSOBJ, 6);
}

TEST_F(EditorTest, ScalingReportsRefusalsAndRefitsTheCamera) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    const float radius = doc().model().Header.Radius;
    Part<MainActions>().ScaleBy(1.0f);
    ASSERT_EQ(prompts_.messages.size(), 1u);
    EXPECT_EQ(prompts_.messages[0].text,
              "Scaling would result in a Model Radius < 0.1 - Scaling not done.");
    Part<MainActions>().ScaleBy(1e7f);
    ASSERT_EQ(prompts_.messages.size(), 2u);
    EXPECT_EQ(prompts_.messages[1].text,
              "Scalng would result in a Model Radius > 90000.0 - Scaling not done.");
    EXPECT_EQ(doc().undoStack().count(), 0);

    const float zoom = viewport().camera().Zoom;
    Part<MainActions>().ScaleBy(200.0f);
    EXPECT_FLOAT_EQ(doc().model().Header.Radius, radius * 2.0f);
    EXPECT_LT(viewport().camera().Zoom, zoom);  // the camera moved back
    EXPECT_EQ(Action("mnuEditUndo")->text(), "Undo Scale Model");
}

TEST_F(EditorTest, RecentPathsFillTheFileMenu) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    QAction* first = Action("mnuMRUPaths_0");
    EXPECT_TRUE(first->isVisible());
    EXPECT_EQ(first->text().toStdString(),
              RecentCaption(1, QFileInfo(kShip).absoluteFilePath().toStdString()));
    EXPECT_FALSE(Action("mnuMRUPaths_1")->isVisible());
}

TEST_F(EditorTest, TheArchiveListOpensAModelThatSavesOnlyThroughSaveAs) {
    QComboBox& list = Part<MainActions>().hogList();
    ASSERT_EQ(list.count(), 1);
    EXPECT_EQ(list.itemText(0), "ship.oof");
    emit list.activated(0);
    EXPECT_TRUE(doc().modelReady());
    EXPECT_EQ(doc().ModelPath(), "ship.oof");
    EXPECT_EQ(window_->windowTitle(), "ship.oof[*] - Meshwright");
    Action("mnuFileSaveOOF")->trigger();  // no file yet: the save dialog asks
    EXPECT_EQ(prompts_.titles, QStringList{"Save OOF File"});
}

TEST_F(EditorTest, ClosingWithUnsavedChangesAsksFirst) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    doc().SelectSubObject(4);
    doc().Apply(MakeReparentCommand(doc(), 4, 1));
    prompts_.answers = {QMessageBox::Cancel};
    EXPECT_FALSE(window_->close());
    EXPECT_EQ(prompts_.questions, QStringList{"Save changes to ship.oof?"});
    EXPECT_TRUE(window_->isVisible());
    prompts_.answers = {QMessageBox::Discard};
    EXPECT_TRUE(window_->close());
}

TEST_F(EditorTest, TheLeftColumnKeepsItsSplitAndStartsOnTheMainFrame) {
    PanelHost& host = panels();
    EXPECT_EQ(host.shownPanel(), "Main");
    EXPECT_FALSE(host.tabs().isEnabled());  // nothing in the tree yet
    QStringList tabs;
    for (int i = 0; i < host.tabs().count(); ++i)
        tabs << host.tabs().tabText(i).remove('&');
    EXPECT_EQ(tabs, (QStringList{"Properties", "Textures", "Batteries", "Animation"}));
    host.SetTreeSplit(0.0f);
    EXPECT_FLOAT_EQ(host.treeSplit(), 0.1f);
    QApplication::processEvents();
    const QWidget& tree = host.tree();
    EXPECT_LT(tree.height(), host.height() / 4);
    host.SetTreeSplit(0.95f);
    EXPECT_FLOAT_EQ(host.treeSplit(), 0.8f);
    EXPECT_GT(tree.height(), host.height() / 2);
}

TEST_F(EditorTest, EveryControlHasAnAccessibleName) {
    ASSERT_TRUE(window_->LoadModel(kShip));
    int checked = 0;
    for (QWidget* w : window_->findChildren<QWidget*>()) {
        const bool control = qobject_cast<QAbstractButton*>(w) || qobject_cast<QComboBox*>(w) ||
                             qobject_cast<QTabBar*>(w) || qobject_cast<QTreeWidget*>(w);
        if (!control || !w->isVisibleTo(window_.get())) continue;
        ExpectAccessibleName(w);
        ++checked;
    }
    EXPECT_GT(checked, 15);
    // Menu items are found by their captions.
    for (QMenu* menu : window_->findChildren<QMenu*>()) {
        for (QAction* a : menu->actions()) {
            if (!a->isSeparator()) {
                EXPECT_FALSE(a->text().isEmpty());
            }
        }
    }
}

// A model made from an OBJ file with a picture beside it: the editor shows the picture on
// the model at once.
TEST_F(EditorTest, ImportedModelShowsThePictureBesideIt) {
    const test::TempDir dir("editor_import");
    {
        std::ofstream(dir / "crate.mtl") << "newmtl wood\nmap_Kd crate_side.png\n";
        std::ofstream(dir / "crate.obj")
            << "mtllib crate.mtl\no Crate\n"
               "v -1 -1 -1\nv 1 -1 -1\nv 1 1 -1\nv -1 1 -1\nv -1 -1 1\nv 1 -1 1\nv 1 1 1\nv -1 1 "
               "1\n"
               "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nusemtl wood\n"
               "f 5/1 6/2 7/3 8/4\nf 2/1 1/2 4/3 3/4\nf 1/1 5/2 8/3 4/4\nf 6/1 2/2 3/3 7/4\n"
               "f 8/1 7/2 3/3 4/4\nf 1/1 2/2 6/3 5/4\n";
    }
    QImage picture(32, 32, QImage::Format_RGBA8888);
    picture.fill(QColor(250, 20, 200));
    for (int i = 0; i < 32; ++i)
        picture.setPixelColor(i, i, QColor(20, 250, 40));
    ASSERT_TRUE(picture.save(QString::fromStdString((dir / "crate_side.png").string())));

    window_->resize(900, 700);
    ASSERT_TRUE(
        Part<FileCommands>().ImportModelFrom(QString::fromStdString((dir / "crate.obj").string())));
    EXPECT_EQ(doc().ModelTitle(), "crate.oof");
    EXPECT_TRUE(doc().isModified());
    const ModelTextures& textures = Part<ModelTextures>();
    ASSERT_EQ(textures.loaded().Resolved.size(), 1u);
    EXPECT_EQ(textures.loaded().Resolved[0].Source, TextureSource::Loose);
    doc().SetViewType(ViewType::Textured);
    QTest::qWait(100);
    const QImage frame = ViewportImage();
    int pink = 0;
    for (int y = 0; y < frame.height(); y += 2) {
        for (int x = 0; x < frame.width(); x += 2) {
            const QColor c = frame.pixelColor(x, y);
            pink += c.red() > 200 && c.green() < 80 && c.blue() > 150;
        }
    }
    EXPECT_GT(pink, 100);
    if (const QString path = ScreenshotPath("editor-imported.png"); !path.isEmpty()) {
        emit Part<MainActions>().menu("mnuFile")->aboutToShow();
        EXPECT_TRUE(WindowImage().save(path));
    }
}

TEST_F(EditorTest, Screenshot) {
    const QString path = ScreenshotPath("editor-main.png");
    if (path.isEmpty()) GTEST_SKIP() << "set MW_SCREENSHOT_DIR to take it";
    window_->resize(1100, 800);
    ASSERT_TRUE(window_->LoadModel(kShip));
    doc().SelectSubObject(3);
    QTest::qWait(100);
    EXPECT_TRUE(WindowImage().save(path));
}

}  // namespace
}  // namespace mw
