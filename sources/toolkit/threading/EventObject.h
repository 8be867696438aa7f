#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/threading/Mutex.h"

#include <atomic>

namespace Toolkit {

/// A flag that threads signal and wait for.
///
/// Waiting polls: a signal is noticed up to `s_uMinSlice` milliseconds late. With automatic reset
/// exactly one of several waiters sees a signal; with manual reset all of them do until `Reset()`.
/// Any thread may call the operations.
class TOOLKIT_API EventObject {
public:
    /// The time between two looks at the flag while waiting, in milliseconds.
    static const unsigned int s_uMinSlice;

    /// With `autoReset` a successful `Wait` clears the flag. Mind the order: the reset mode stands
    /// before the initial state.
    EventObject(bool autoReset, bool initiallySignalled);
    ~EventObject();

    EventObject(const EventObject&) = delete;
    EventObject& operator=(const EventObject&) = delete;

    void Signal();
    void Reset();

    /// Waits `timeoutMs` milliseconds at most for the flag; 0 only looks, 0xFFFFFFFF waits for
    /// ever. True when it was signalled.
    bool Wait(unsigned int timeoutMs);

private:
    bool TestAndReset();

    std::atomic<bool> m_signalled; // changed under m_lock
    bool m_autoReset;
    Mutex m_lock;
};

} // namespace Toolkit
