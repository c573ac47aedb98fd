#include <QApplication>
#include <gtest/gtest.h>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

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
    const int result = RUN_ALL_TESTS();
#if defined(__SANITIZE_ADDRESS__)
    // Look for leaks now, while every thread is alive and idle and every library
    // still loaded, and not at exit. At exit Qt's X event and D-Bus threads are on
    // their way out (QThread::wait() returns before the thread has gone) and its
    // plugins are being unloaded; the leak checker's stop-the-world tracer
    // crashed there now and then ("Tracer caught signal 11"). The GL driver being
    // loaded also lets the suppressions name its one-time allocations. The check
    // at exit does not run after this one.
    __lsan_do_leak_check();
#endif
    return result;
}
