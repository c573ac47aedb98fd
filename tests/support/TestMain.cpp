#include <QApplication>
#include <cstring>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

namespace {

// The leak checker runs at exit, after the X connection has closed and unloaded
// the GL driver: the driver's one-time allocations would then be reported from an
// unknown module, out of reach of the suppressions that name it. Keeping the
// driver loaded lets them be named.
int keepDriverLoaded(dl_phdr_info* info, size_t, void*)
{
    const char* name = info->dlpi_name;
    if (name && (std::strstr(name, "_dri.so") || std::strstr(name, "libgallium")))
        dlopen(name, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
    return 0;
}

} // namespace

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
    dl_iterate_phdr(keepDriverLoaded, nullptr);
    return result;
}
