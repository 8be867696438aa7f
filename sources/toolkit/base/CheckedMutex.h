#pragma once

#include <mutex>

// The thread-safety annotations of base/, which must not include threading/ThreadSafety.h.
// With -Wthread-safety, Clang checks which lock guards what.
#if defined(__clang__)
#define BASE_THREAD_ANNOTATION(attribute) __attribute__((attribute))
#else
#define BASE_THREAD_ANNOTATION(attribute)
#endif

/// On a variable: it may be used only while `lock` is held.
#define BASE_GUARDED_BY(lock) BASE_THREAD_ANNOTATION(guarded_by(lock))

/// On a function: the caller must hold `lock`.
#define BASE_REQUIRES(lock) BASE_THREAD_ANNOTATION(requires_capability(lock))

/// On a function: turns the check off. Say why in a comment.
#define BASE_NO_THREAD_SAFETY_ANALYSIS BASE_THREAD_ANNOTATION(no_thread_safety_analysis)

namespace Toolkit::Base {

/// A mutex of the standard library, annotated so that Clang checks its use. libstdc++ does not
/// annotate its mutexes.
template <typename StandardMutex>
class BASE_THREAD_ANNOTATION(capability("mutex")) BasicCheckedMutex {
public:
    void Lock() BASE_THREAD_ANNOTATION(acquire_capability()) { m_mutex.lock(); }
    void Unlock() BASE_THREAD_ANNOTATION(release_capability()) { m_mutex.unlock(); }

private:
    StandardMutex m_mutex;
};

// Can be constinit, because the constructor of std::mutex is constexpr.
using CheckedMutex = BasicCheckedMutex<std::mutex>;

// Not constinit: the constructor of libc++'s std::recursive_mutex is not constexpr.
using CheckedRecursiveMutex = BasicCheckedMutex<std::recursive_mutex>;

/// Holds a checked mutex until the end of a scope.
template <typename StandardMutex>
class BASE_THREAD_ANNOTATION(scoped_lockable) CheckedLock {
public:
    explicit CheckedLock(BasicCheckedMutex<StandardMutex>& mutex)
        BASE_THREAD_ANNOTATION(acquire_capability(mutex))
        : m_mutex(mutex)
    {
        m_mutex.Lock();
    }

    ~CheckedLock() BASE_THREAD_ANNOTATION(release_capability()) { m_mutex.Unlock(); }

    CheckedLock(const CheckedLock&) = delete;
    CheckedLock& operator=(const CheckedLock&) = delete;

private:
    BasicCheckedMutex<StandardMutex>& m_mutex;
};

} // namespace Toolkit::Base
