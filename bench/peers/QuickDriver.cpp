#include "QuickDriver.h"

#include "PeerFrameClock.h"
#include "PeerScene.h"

#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QQuickItem>
#include <QQuickView>

QuickDriver::QuickDriver(QQuickView* view, PeerFrameClock* clock, bool idle, const QString& screenshot)
    : mView(view), mClock(clock), mIdle(idle), mScreenshot(screenshot)
{
    mList = view->rootObject()->findChild<QQuickItem*>(QStringLiteral("list"));
    mRing = view->rootObject()->findChild<QQuickItem*>(QStringLiteral("ring"));
    view->installEventFilter(this);
    // Direct: the signal comes on the GUI thread with the basic render loop, right
    // after the swap.
    connect(view, &QQuickWindow::frameSwapped, this, &QuickDriver::swapped, Qt::DirectConnection);
}

bool QuickDriver::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == mView && (event->type() == QEvent::UpdateRequest || event->type() == QEvent::Expose) &&
        !mClock->inFrame()) {
        mClock->frameStarted();
        if (!mIdle) {
            const double t = mClock->sceneSeconds();
            mList->setProperty("contentY", PeerScene::scrollOffset(t));
            mRing->setRotation(PeerScene::ringAngle(t));
        }
    }
    return false;
}

void QuickDriver::swapped()
{
    if (!mClock->frameSwapped()) {
        mView->update();
        return;
    }
    if (!mScreenshot.isEmpty())
        mView->grabWindow().save(mScreenshot);
    QCoreApplication::exit(0);
}
