#include "BenchScreen.h"

#include <DisplayDeviceWidget.h>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QTest>

BenchScreen::BenchScreen()
{
    if (!mDevice.hasWindow())
        return;
    mDevice.timer()->stop();
    mDevice.setVisible(true);
    QTest::qWaitForWindowExposed(mDevice.widget());
}

void BenchScreen::frame()
{
    mDevice.doTick();
    QOpenGLContext::currentContext()->functions()->glFinish();
}
