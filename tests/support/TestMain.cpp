#include <QApplication>
#include <gtest/gtest.h>

#if defined(__SANITIZE_ADDRESS__)
#include <QDir>
#include <QFile>
#include <QSet>
#include <sanitizer/lsan_interface.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace {

// The process's threads other than the caller; running() tells whether one of
// them is on a CPU or about to be.
struct OtherThreads
{
    QSet<QString> ids;
    bool running = false;

    static OtherThreads now()
    {
        OtherThreads threads;
        const QString self = QString::number(syscall(SYS_gettid));
        const QDir tasks(QStringLiteral("/proc/self/task"));
        for (const QString& id : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            QFile stat(tasks.filePath(id) + QStringLiteral("/stat"));
            if (id == self || !stat.open(QIODevice::ReadOnly))
                continue;
            threads.ids.insert(id);
            // "tid (name) S ...": the name may hold blanks and brackets.
            const QByteArray line = stat.readAll();
            const int nameEnd = line.lastIndexOf(')');
            threads.running |= nameEnd >= 0 && line.mid(nameEnd + 2, 1) == "R";
        }
        return threads;
    }
};

// Waits, two seconds at most, until no other thread runs and none has come or
// gone for 20 ms: threads that were told to end (a thread pool's, or one that a
// QThread::wait() let go before it had quite gone) are then gone.
void waitForIdleThreads()
{
    OtherThreads before = OtherThreads::now();
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        const OtherThreads after = OtherThreads::now();
        if (!after.running && after.ids == before.ids)
            return;
        before = after;
    }
}

} // namespace
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
    // Look for leaks now, while every thread is idle and every library still
    // loaded, and not at exit. At exit Qt's X event and D-Bus threads are on their
    // way out (QThread::wait() returns before the thread has gone) and its plugins
    // are being unloaded; the leak checker's stop-the-world tracer crashed there
    // now and then ("Tracer caught signal 11"). The GL driver being loaded also
    // lets the suppressions name its one-time allocations. The check at exit does
    // not run after this one.
    waitForIdleThreads();
    __lsan_do_leak_check();
#endif
    return result;
}
