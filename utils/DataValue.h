#pragma once

#include "OrbisUtilsExport.h"

#include <QObject>
#include <QVariant>
#include <atomic>
#include <mutex>

/// An observable value of vehicle or application state. Writes may come from any
/// thread; DataValueManager::processPendingChanges() delivers the changes on the
/// GUI thread, once per value per batch, as the signal "valueChanged(DataValue*)".
class ORBIS_UTILS_EXPORT DataValue : public QObject
{
    Q_OBJECT

public:
    explicit DataValue(const QString& name, const QVariant& initial = QVariant(), QObject* parent = nullptr);
    ~DataValue() override;

    QString name() const { return mName; }

    QVariant value() const;
    double toReal() const { return value().toReal(); }
    int toInt() const { return value().toInt(); }
    bool toBool() const { return value().toBool(); }
    QString toString() const { return value().toString(); }

    /// Stores the value; a different value queues a change notification.
    void setValue(const QVariant& value);
    void addValue(double delta);

    bool hasPendingChange() const { return mPending.load(); }

    /// Holds the value's lock while reading several related things. A null value
    /// takes no lock, so callers need not test for it.
    class ConditionalLocker
    {
    public:
        explicit ConditionalLocker(const DataValue* value);
        explicit ConditionalLocker(const DataValue& value) : ConditionalLocker(&value) {}
        ~ConditionalLocker();
        ConditionalLocker(const ConditionalLocker&) = delete;
        ConditionalLocker& operator=(const ConditionalLocker&) = delete;

    private:
        const DataValue* mValue;
    };

    /// Holds the value's lock across a write (or several); the change notification
    /// is queued when the outermost writer releases it.
    class EventLocker
    {
    public:
        explicit EventLocker(DataValue* value);
        explicit EventLocker(DataValue& value) : EventLocker(&value) {}
        ~EventLocker();
        EventLocker(const EventLocker&) = delete;
        EventLocker& operator=(const EventLocker&) = delete;

    private:
        DataValue* mValue;
    };

Q_SIGNALS:
    void valueChanged(DataValue* value);

protected:
    /// Emits the change signals; called by DataValueManager on the GUI thread.
    virtual void emitChanged();

private:
    friend class DataValueManager;
    void queueChangeLocked();

    QString mName;
    QVariant mValue;
    mutable std::recursive_mutex mMutex;
    int mWriteDepth = 0;
    bool mChangedInWrite = false;
    std::atomic<bool> mPending{false};
};
