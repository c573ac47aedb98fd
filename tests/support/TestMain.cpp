#include <QApplication>
#include <cstring>
#include <gtest/gtest.h>

// Every test program runs inside a QApplication: views, timers, fonts and GL
// contexts need one. The platform comes from QT_QPA_PLATFORM (offscreen for
// plain tests, xcb on Xvfb for tests labelled gl); listing the tests needs none.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (::testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
