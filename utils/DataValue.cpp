#include "DataValue.h"

#include "DataValueManager.h"

DataValue::DataValue(const QString& name, const QVariant& initial, QObject* parent)
    : QObject(parent), mName(name), mValue(initial)
{
    setObjectName(name);
}

DataValue::~DataValue()
{
    if (mPending.load() && DataValueManager::instance())
        DataValueManager::instance()->forget(this);
}

QVariant DataValue::value() const
{
    std::lock_guard<std::recursive_mutex> lock(mMutex);
    return mValue;
}

void DataValue::setValue(const QVariant& value)
{
    EventLocker locker(this);
    if (mValue == value && mValue.userType() == value.userType())
        return;
    mValue = value;
    mChangedInWrite = true;
}

void DataValue::addValue(double delta)
{
    EventLocker locker(this);
    setValue(mValue.toReal() + delta);
}

void DataValue::queueChangeLocked()
{
    if (!mPending.exchange(true))
        DataValueManager::instance()->enqueue(this);
}

void DataValue::emitChanged()
{
    Q_EMIT valueChanged(this);
}

DataValue::ConditionalLocker::ConditionalLocker(const DataValue* value) : mValue(value)
{
    if (mValue)
        mValue->mMutex.lock();
}

DataValue::ConditionalLocker::~ConditionalLocker()
{
    if (mValue)
        mValue->mMutex.unlock();
}

DataValue::EventLocker::EventLocker(DataValue* value) : mValue(value)
{
    if (!mValue)
        return;
    mValue->mMutex.lock();
    ++mValue->mWriteDepth;
}

DataValue::EventLocker::~EventLocker()
{
    if (!mValue)
        return;
    if (--mValue->mWriteDepth == 0 && mValue->mChangedInWrite) {
        mValue->mChangedInWrite = false;
        mValue->queueChangeLocked();
    }
    mValue->mMutex.unlock();
}
