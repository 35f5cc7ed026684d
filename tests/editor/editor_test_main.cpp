// Editor tests that need widgets but no OpenGL: they run on Qt's offscreen platform.
#include <gtest/gtest.h>
#include <QApplication>

#include "support/test_state.h"

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    mw::test::UseScratchStateFolder();
    return RUN_ALL_TESTS();
}
