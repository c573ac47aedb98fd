#pragma once

#include "Logger.h"
#include "OrbisUtilsExport.h"

#include <QFlags>
#include <atomic>
#include <mutex>

namespace SingletonDetail {
extern ORBIS_UTILS_EXPORT const char* const kLogSource;
}

enum class SingletonCreation
{
    /// The instance is deleted by shutdown() (and at process exit when registered).
    Destroyable = 0x1,
    /// The instance lives until the process ends; shutdown() only forbids re-creation.
    Leaked = 0x2,
};
Q_DECLARE_FLAGS(SingletonCreationFlags, SingletonCreation)
Q_DECLARE_OPERATORS_FOR_FLAGS(SingletonCreationFlags)

/// A lazily created process-wide instance of T. Creation is guarded by a mutex; a
/// creation that asks for its own singleton again, and a request after shutdown,
/// are reported and answered with nullptr.
///
/// T needs a constructor without arguments reachable from Singleton<T>
/// (a public one, or `friend class Singleton<T>;`).
///
/// The template is exported so that every library and program that instantiates
/// Singleton<T> shares one instance: with hidden symbols, each would hold its own.
template <typename T, int Flags = int(SingletonCreation::Destroyable)> class ORBIS_UTILS_EXPORT Singleton
{
public:
    static T* instance()
    {
        T* existing = sInstance.load(std::memory_order_acquire);
        if (existing)
            return existing;
        std::lock_guard<std::recursive_mutex> lock(sMutex);
        if (T* raced = sInstance.load())
            return raced;
        if (sShutdown) {
            Logger::logAssert("false", QStringLiteral("Trying to create singleton after shutdown"),
                              SingletonDetail::kLogSource, __LINE__);
            return nullptr;
        }
        if (sCreating) {
            Logger::logAssert(
                "false",
                QStringLiteral("The creation of this singleton has recursively requested the singleton"),
                SingletonDetail::kLogSource, __LINE__);
            return nullptr;
        }
        sCreating = true;
        T* created = new T();
        sCreating = false;
        sInstance.store(created, std::memory_order_release);
        return created;
    }

    static bool exists() { return sInstance.load() != nullptr; }
    static bool isShutdown() { return sShutdown; }

    /// Deletes the instance (unless it is leaked by its flags); later requests fail.
    static void shutdown()
    {
        std::lock_guard<std::recursive_mutex> lock(sMutex);
        sShutdown = true;
        destroyLocked();
    }

    /// Deletes the instance and allows it to be created again (tests, reloading).
    static void reset()
    {
        std::lock_guard<std::recursive_mutex> lock(sMutex);
        destroyLocked();
        sShutdown = false;
    }

private:
    static void destroyLocked()
    {
        T* doomed = sInstance.exchange(nullptr);
        if (!(Flags & int(SingletonCreation::Leaked)))
            delete doomed;
    }

    static inline std::atomic<T*> sInstance{nullptr};
    static inline std::recursive_mutex sMutex;
    static inline bool sCreating = false;
    static inline bool sShutdown = false;
};
