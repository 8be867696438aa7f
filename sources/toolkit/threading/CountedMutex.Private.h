#pragma once

#include "toolkit/core/Assert.h"

#include <wx/thread.h>

#include <atomic>

namespace Toolkit {

/// A recursive wxMutex that counts how often it is locked. Only the thread that holds it changes
/// the count, so loading and storing need not be one atomic step. If another thread calls
/// Release(), the count becomes uncertain. Relaxed order is enough: the mutex itself orders the
/// holders, and the destructor runs when no other thread uses the object.
class CountedMutex : public wxMutex {
public:
    CountedMutex() : wxMutex(wxMUTEX_RECURSIVE) { ASSERT(IsOk()); }

    wxMutexError Acquire() { return CountSuccess(Lock()); }
    wxMutexError TryAcquire() { return CountSuccess(TryLock()); }

    /// Unlocks the mutex once; false if the calling thread does not hold it.
    bool Release()
    {
        Count(-1);
        if (Unlock() == wxMUTEX_NO_ERROR)
            return true;
        Count(1);
        // This thread does not hold the mutex, but has changed the count. If the holder changed it
        // at the same time, that change may be lost.
        m_isCountCertain.store(false, std::memory_order_relaxed);
        return false;
    }

    /// Unlocks the mutex as often as the calling thread has locked it; false if another thread
    /// holds it.
    bool ReleaseAll()
    {
        while (m_holds.load(std::memory_order_relaxed) > 0) {
            if (!Release())
                return false;
        }
        return true;
    }

    /// True only if it is certain that no thread holds the mutex.
    ///
    /// The count alone is not enough: in a forked child, another thread of the parent may have
    /// locked the mutex at the fork, but not counted that yet.
    bool IsCertainlyFree()
    {
        return m_holds.load(std::memory_order_relaxed) == 0 &&
               m_isCountCertain.load(std::memory_order_relaxed) && TryLock() == wxMUTEX_NO_ERROR &&
               Unlock() == wxMUTEX_NO_ERROR;
    }

private:
    wxMutexError CountSuccess(wxMutexError result)
    {
        if (result == wxMUTEX_NO_ERROR)
            Count(1);
        return result;
    }

    void Count(int change)
    {
        m_holds.store(m_holds.load(std::memory_order_relaxed) + change, std::memory_order_relaxed);
    }

    std::atomic<int> m_holds{0};
    std::atomic<bool> m_isCountCertain{true};
};

} // namespace Toolkit
