#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/threading/Mutex.h"
#include "toolkit/threading/ThreadSafety.h"

namespace Toolkit {

/// A flag that threads signal and wait for.
///
/// Waiting polls: a signal is noticed up to `s_uMinSlice` milliseconds late, and missed if
/// `Reset()` comes first. With automatic reset, exactly one of several waiting threads sees a
/// signal; with manual reset, all of them see it until `Reset()`. Signals are not counted: a
/// signalled event ignores further ones. Any thread may call the operations.
class TOOLKIT_API EventObject {
public:
    /// Polling interval of a wait, in milliseconds.
    static const unsigned int s_uMinSlice;

    /// With `autoReset`, a successful `Wait` clears the flag. Note the order: the reset mode comes
    /// before the initial state. Throws `std::bad_alloc` when out of memory.
    EventObject(bool autoReset, bool initiallySignalled);
    ~EventObject();

    EventObject(const EventObject&) = delete;
    EventObject& operator=(const EventObject&) = delete;

    void Signal();
    void Reset();

    /// Waits up to `timeoutMs` milliseconds for a signal; 0 only tests the flag, and
    /// `MutexInternal::Infinite` waits forever. Returns whether the flag was signalled.
    bool Wait(unsigned int timeoutMs);

private:
    bool TestAndReset();

    bool m_signalled TOOLKIT_GUARDED_BY(m_lock);
    bool m_autoReset;
    Mutex m_lock;
};

} // namespace Toolkit
