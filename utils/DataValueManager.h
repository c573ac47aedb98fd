#pragma once

#include "OrbisUtilsExport.h"
#include "Singleton.h"

#include <QVector>
#include <mutex>

class DataValue;

/// Collects the data values changed since the last frame, from any thread, and
/// delivers their notifications in one batch on the GUI thread.
class ORBIS_UTILS_EXPORT DataValueManager
{
public:
    static DataValueManager* instance();

    /// Emits the change signals of every value written since the last call, each
    /// once, in the order of their first change. Returns how many were delivered.
    int processPendingChanges();
    int pendingCount() const;

private:
    friend class DataValue;
    friend class Singleton<DataValueManager, int(SingletonCreation::Leaked)>;
    DataValueManager() = default;

    void enqueue(DataValue* value);
    void forget(DataValue* value);

    mutable std::mutex mMutex;
    QVector<DataValue*> mPending;
    QVector<DataValue*> mDelivering;
};
