// The editor window on the sample model and the sample game data, for tests under a real
// (virtual) X display.
#pragma once

#include <gtest/gtest.h>
#include <QAccessible>
#include <QApplication>
#include <QMenu>
#include <QPainter>
#include <QTabBar>
#include <QTest>
#include <cstdlib>
#include <memory>

#include "editor/actions.h"
#include "editor/document.h"
#include "editor/main_window.h"
#include "editor/panels/panel_host.h"
#include "editor/viewport.h"
#include "gamedata/texture_loader.h"
#include "support/sample_document.h"
#include "support/scripted_prompts.h"

namespace mw {

inline constexpr const char* kShip = MW_SOURCE_DIR "/samples/ship.oof";

class EditorTest : public ::testing::Test {
  protected:
    EditorTest() {
        test::ReadSampleGameData(settings_, game_);
        window_ = std::make_unique<frmOOF>(oof_, game_, settings_, QPixmap(), &prompts_);
        window_->resize(1000, 700);
        window_->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
        window_->LoadEffects();
    }

    Document& doc() { return window_->document(); }
    // The window's parts, found as assistive tools and tests find them.
    template <typename T>
    T& Part() {
        T* part = window_->findChild<T*>();
        EXPECT_NE(part, nullptr);
        return *part;
    }
    Viewport& viewport() { return Part<Viewport>(); }
    PanelHost& panels() { return Part<PanelHost>(); }
    // A control assistive tools can name.
    static void ExpectAccessibleName(QWidget* w) {
        QAccessibleInterface* a = QAccessible::queryAccessibleInterface(w);
        ASSERT_NE(a, nullptr);
        EXPECT_FALSE(a->text(QAccessible::Name).isEmpty()) << w->objectName().toStdString();
    }

    // Makes the tab of that caption current.
    void ShowTab(const QString& tab) {
        QTabBar& tabs = panels().tabs();
        for (int i = 0; i < tabs.count(); ++i) {
            if (QString(tabs.tabText(i)).remove('&') == tab) tabs.setCurrentIndex(i);
        }
        QApplication::processEvents();
    }
    QAction* Action(const char* name) { return Part<MainActions>().action(name); }
    void OpenEditMenu() { emit Part<MainActions>().menu("mnuEdit")->aboutToShow(); }

    QImage ViewportImage() {
        QApplication::processEvents();
        return viewport().grabFramebuffer();
    }

    // The window with the viewport's frame as the screen shows it (opaque).
    QImage WindowImage() {
        QImage shot = window_->grab().toImage();
        QPainter painter(&shot);
        Viewport& view = viewport();
        painter.drawImage(view.mapTo(window_.get(), QPoint(0, 0)),
                          ViewportImage().convertToFormat(QImage::Format_RGB32));
        return shot;
    }

    // Screenshots are taken only when MW_SCREENSHOT_DIR names a folder for them.
    static QString ScreenshotPath(const char* file) {
        const char* dir = std::getenv("MW_SCREENSHOT_DIR");
        return dir == nullptr ? QString() : QString("%1/%2").arg(dir, file);
    }

    Settings settings_;
    GameData game_;
    clsOOF oof_;
    test::ScriptedPrompts prompts_;
    std::unique_ptr<frmOOF> window_;
};

}  // namespace mw
