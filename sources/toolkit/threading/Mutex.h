#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/threading/ThreadSafety.h"

#include <atomic>

namespace Toolkit {

class CountedMutex;
template <typename Policy>
class smart_ptr_inner_data;

/// A recursive mutex whose lock operation has a time-out. `MutexLocker` locks it for a scope.
///
/// The thread that holds the mutex may lock it again, and must unlock it once for each lock.
/// Lock() and Unlock() report failures only by their results: they neither throw nor log.
class TOOLKIT_CAPABILITY("mutex") TOOLKIT_API MutexInternal {
public:
    /// A time-out that never expires.
    static constexpr unsigned int Infinite = 0xFFFFFFFF;

    /// If `initiallyLocked`, the calling thread holds the new mutex. Throws
    /// `std::bad_alloc` when out of memory.
    explicit MutexInternal(bool initiallyLocked);
    /// Destroying a locked mutex is allowed, even if another thread holds it, and logs nothing. But
    /// no thread may be waiting for it.
    virtual ~MutexInternal();

    MutexInternal(const MutexInternal&) = delete;
    MutexInternal& operator=(const MutexInternal&) = delete;

    /// Waits about `timeoutMs` milliseconds for the mutex, at most 10 longer; `Infinite` waits
    /// forever. Returns whether it locked the mutex.
    ///
    /// The mutex is polled: with a time-out of 25, Lock() makes three attempts and sleeps 10 ms
    /// after each one that fails, 30 ms in all. With 0 to 9 it makes one attempt and never sleeps.
    bool Lock(unsigned int timeoutMs) TOOLKIT_TRY_ACQUIRE(true);

    /// Unlocks the mutex once. False if the calling thread does not hold it.
    bool Unlock() TOOLKIT_RELEASE();

private:
    template <typename Policy>
    friend class smart_ptr_inner_data;

    // For `smart_ptr_inner_data::lock`, which the library never locks. The first Lock() allocates
    // the CountedMutex.
    struct OnFirstUse {};
    explicit MutexInternal(OnFirstUse) noexcept : m_mutex(nullptr) {}

    CountedMutex* CreateOnFirstUse();

    std::atomic<CountedMutex*> m_mutex; // owned; null until the first Lock() after OnFirstUse
};

/// Declare mutexes as `Mutex`, and pass them to functions as `MutexInternal&`. `Mutex` adds
/// nothing.
class TOOLKIT_API Mutex : public MutexInternal {
public:
    /// If `initiallyLocked`, the calling thread holds the new mutex. Throws
    /// `std::bad_alloc` when out of memory.
    explicit Mutex(bool initiallyLocked);
    ~Mutex() override;
};

/// Holds a mutex for the rest of a scope.
///
/// If the time-out expires, the locker neither holds nor unlocks the mutex, and cannot report it.
/// Pass `MutexInternal::Infinite` unless the lock is optional.
class TOOLKIT_SCOPED_CAPABILITY TOOLKIT_API MutexLocker {
public:
    /// Locks `mutex`, which must outlive the locker; waits like `MutexInternal::Lock()`.
    //
    // No thread-safety analysis: Clang cannot track a lock that is held only if Lock() succeeded.
    MutexLocker(MutexInternal& mutex, unsigned int timeoutMs)
        TOOLKIT_ACQUIRE(mutex) TOOLKIT_NO_THREAD_SAFETY_ANALYSIS : m_mutex(mutex)
    {
        m_locked = mutex.Lock(timeoutMs);
    }

    ~MutexLocker() TOOLKIT_RELEASE() TOOLKIT_NO_THREAD_SAFETY_ANALYSIS
    {
        if (m_locked)
            m_mutex.Unlock();
    }

    MutexLocker(const MutexLocker&) = delete;
    MutexLocker& operator=(const MutexLocker&) = delete;

private:
    MutexInternal& m_mutex;
    bool m_locked;
};

} // namespace Toolkit
