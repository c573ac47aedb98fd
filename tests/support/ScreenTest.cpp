#include "ScreenTest.h"

#include "DisplayDeviceWidget.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QThreadPool>

void ScreenTest::TearDown()
{
    mDevice.reset();
}

QPoint ScreenTest::onScreen(QPoint wanted, QSize size)
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return wanted;
    const QRect area = screen->geometry();
    return QPoint(qBound(area.left(), wanted.x(), qMax(area.left(), area.right() + 1 - size.width())),
                  qBound(area.top(), wanted.y(), qMax(area.top(), area.bottom() + 1 - size.height())));
}

DisplayDevice& ScreenTest::open(int width, int height, QPoint position)
{
    mDevice = std::make_unique<DisplayDevice>(width, height);
    mDevice->timer()->stop();
    mDevice->setPosition(onScreen(position, QSize(width, height)));
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
