#include "DatabaseThread.h"

#include <QMetaObject>

namespace NativeMaps {

DatabaseThread::DatabaseThread(const QString& name) : mContext(new QObject)
{
    mThread.setObjectName(name);
    mContext->moveToThread(&mThread);
    QObject::connect(&mThread, &QThread::finished, mContext, &QObject::deleteLater);
    mThread.start();
}

DatabaseThread::~DatabaseThread()
{
    if (mFinish)
        call(mFinish);
    mThread.quit();
    mThread.wait();
}

void DatabaseThread::post(std::function<void()> work)
{
    QMetaObject::invokeMethod(mContext, std::move(work), Qt::QueuedConnection);
}

void DatabaseThread::call(const std::function<void()>& work)
{
    if (isCurrent()) {
        work();
        return;
    }
    QMetaObject::invokeMethod(mContext, work, Qt::BlockingQueuedConnection);
}

} // namespace NativeMaps
