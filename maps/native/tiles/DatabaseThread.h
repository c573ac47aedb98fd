#pragma once

#include <QObject>
#include <QThread>
#include <functional>

namespace NativeMaps {

// A thread of its own for one database connection: SQL connections may only be
// used on the thread that opened them, and disk work must stay off the GUI thread.
// Work posted here runs in the order it was posted.
class DatabaseThread
{
public:
    explicit DatabaseThread(const QString& name);
    // Runs what was posted, then `finish` (closing the connection) on the thread.
    ~DatabaseThread();
    DatabaseThread(const DatabaseThread&) = delete;
    DatabaseThread& operator=(const DatabaseThread&) = delete;

    void post(std::function<void()> work);
    // Waits for `work` and for everything posted before it.
    void call(const std::function<void()>& work);
    void setFinish(std::function<void()> finish) { mFinish = std::move(finish); }
    bool isCurrent() const { return QThread::currentThread() == &mThread; }

private:
    QThread mThread;
    QObject* mContext;
    std::function<void()> mFinish;
};

} // namespace NativeMaps
