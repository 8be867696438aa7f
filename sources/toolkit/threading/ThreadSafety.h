#pragma once

// Annotations that Clang checks with -Wthread-safety: which lock guards which data, and which
// functions acquire it. Empty for other compilers.
//
//     class Account {
//         Mutex m_lock;
//         int m_balance TOOLKIT_GUARDED_BY(m_lock);
//     };
//
// The check assumes that a `MutexLocker` holds its mutex, even if the time-out of the locker has
// expired: lock with `MutexInternal::Infinite`.

#if defined(__clang__)
#define TOOLKIT_THREAD_ANNOTATION(attribute) __attribute__((attribute))
#else
#define TOOLKIT_THREAD_ANNOTATION(attribute)
#endif

/// On a class: it is a lock; compiler messages call it `kind`.
#define TOOLKIT_CAPABILITY(kind) TOOLKIT_THREAD_ANNOTATION(capability(kind))

/// On a class: an object holds a lock from its constructor to its destructor.
#define TOOLKIT_SCOPED_CAPABILITY TOOLKIT_THREAD_ANNOTATION(scoped_lockable)

/// On a member: it may be used only while `lock` is held.
#define TOOLKIT_GUARDED_BY(lock) TOOLKIT_THREAD_ANNOTATION(guarded_by(lock))

/// On a pointer member: what it points to may be used only while `lock` is held.
#define TOOLKIT_PT_GUARDED_BY(lock) TOOLKIT_THREAD_ANNOTATION(pt_guarded_by(lock))

/// On a function: the caller must hold the locks.
#define TOOLKIT_REQUIRES(...) TOOLKIT_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))

/// On a function: the caller must not hold the locks.
#define TOOLKIT_EXCLUDES(...) TOOLKIT_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))

/// On a function: it acquires the locks, or this object if none is named.
#define TOOLKIT_ACQUIRE(...) TOOLKIT_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))

/// On a function: it acquires locks only if it returns the macro's first argument, such as `true`.
/// The other arguments name the locks; without them, it is this object.
#define TOOLKIT_TRY_ACQUIRE(...) TOOLKIT_THREAD_ANNOTATION(try_acquire_capability(__VA_ARGS__))

/// On a function: it releases the locks, or this object if none is named.
#define TOOLKIT_RELEASE(...) TOOLKIT_THREAD_ANNOTATION(release_capability(__VA_ARGS__))

/// On a function: Clang does not check it. Say why in a comment.
#define TOOLKIT_NO_THREAD_SAFETY_ANALYSIS TOOLKIT_THREAD_ANNOTATION(no_thread_safety_analysis)
