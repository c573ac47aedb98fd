#include <QCoreApplication>
#include <QProcess>
#include <gtest/gtest.h>

namespace {

const char* kLeakingChild = "ORBIS_LEAKING_CHILD";

} // namespace

// Run alone by the test below: it loses a block the leak checker must find.
TEST(LeakCheck, LeakingChild)
{
    if (qEnvironmentVariableIsEmpty(kLeakingChild))
        GTEST_SKIP() << "runs only as the child of ALeakFailsTheTestProgram";
    static char* volatile lost = nullptr;
    lost = new char[4321];
    lost = nullptr;
}

// The sanitizer suite checks each test program for leaks as it exits: a program
// whose tests all pass must still fail when a test lost memory.
TEST(LeakCheck, ALeakFailsTheTestProgram)
{
#if !defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "leaks are checked in the address sanitizer build";
#endif
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(kLeakingChild), QStringLiteral("1"));
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--gtest_filter=LeakCheck.LeakingChild")});
    ASSERT_TRUE(child.waitForFinished(120000));
    const QString out = QString::fromLocal8Bit(child.readAllStandardOutput());
    const QString err = QString::fromLocal8Bit(child.readAllStandardError());
    EXPECT_TRUE(out.contains(QStringLiteral("[  PASSED  ] 1 test"))) << out.toStdString();
    // The checker ends the program with an error code, or aborts it under abort_on_error.
    EXPECT_TRUE(child.exitStatus() == QProcess::CrashExit || child.exitCode() != 0);
    EXPECT_TRUE(err.contains(QStringLiteral("LeakSanitizer: detected memory leaks"))) << err.toStdString();
    EXPECT_TRUE(err.contains(QStringLiteral("4321 byte(s) leaked"))) << err.toStdString();
}
