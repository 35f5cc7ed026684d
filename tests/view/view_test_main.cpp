// Tests that need a GUI application (and, for OpenGL, a display: run them under xvfb-run).
#include <gtest/gtest.h>
#include <QApplication>

#include "support/test_state.h"

#include "view/offscreen.h"

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();  // no display needed to list
    mw::ApplyViewFormat();
    QApplication app(argc, argv);
    mw::test::UseScratchStateFolder();
    return RUN_ALL_TESTS();
}
