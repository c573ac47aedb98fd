#include "DataValueManager.h"

#include "DataValue.h"

#include <algorithm>

DataValueManager* DataValueManager::instance()
{
    // Leaked: values owned by globals may still be destroyed after shutdown.
    return Singleton<DataValueManager, int(SingletonCreation::Leaked)>::instance();
}

void DataValueManager::enqueue(DataValue* value)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mPending.append(value);
}

void DataValueManager::forget(DataValue* value)
{
    std::lock_guard<std::mutex> lock(mMutex);
    mPending.removeAll(value);
    std::replace(mDelivering.begin(), mDelivering.end(), value, static_cast<DataValue*>(nullptr));
}

int DataValueManager::pendingCount() const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mPending.size();
}

int DataValueManager::processPendingChanges()
{
    int count = 0;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mDelivering.swap(mPending);
        count = mDelivering.size();
    }
    for (int i = 0; i < count; ++i) {
        DataValue* value;
        {
            // A listener may delete a later value of the batch; forget() nulls it here.
            std::lock_guard<std::mutex> lock(mMutex);
            value = mDelivering.at(i);
        }
        if (!value)
            continue;
        // Cleared before emitting: a listener that writes again queues a new change
        // for the next batch instead of being lost.
        value->mPending.store(false);
        value->emitChanged();
    }
    std::lock_guard<std::mutex> lock(mMutex);
    mDelivering.clear();
    return count;
}
