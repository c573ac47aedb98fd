#include "ScreenTest.h"

#include "DisplayDeviceWidget.h"

#include <QTest>
#include <QThreadPool>

void ScreenTest::TearDown()
{
    mDevice.reset();
}

DisplayDevice& ScreenTest::open(int width, int height, QPoint position)
{
    mDevice = std::make_unique<DisplayDevice>(width, height);
    mDevice->timer()->stop();
    mDevice->setPosition(position);
    mDevice->setVisible(true);
    EXPECT_TRUE(QTest::qWaitForWindowExposed(mDevice->widget()));
    return *mDevice;
}

QImage ScreenTest::frame()
{
    const QString path = mDir.filePath(QStringLiteral("frame%1.png").arg(mShots++));
    mDevice->screenshot(path);
    mDevice->doTick();
    QThreadPool::globalInstance()->waitForDone();
    return QImage(path);
}
