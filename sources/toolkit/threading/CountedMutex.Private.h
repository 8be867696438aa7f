#pragma once

#include "toolkit/core/Assert.h"

#include <wx/thread.h>

#include <atomic>

namespace Toolkit {

/// The framework's mutex with the number of times that it is held. The thread that holds it is the
/// one that counts, so loading and storing need not be one step.
class CountedMutex : public wxMutex {
public:
    CountedMutex() : wxMutex(wxMUTEX_RECURSIVE) { ASSERT(IsOk()); }

    wxMutexError Acquire() { return Counted(Lock()); }
    wxMutexError TryAcquire() { return Counted(TryLock()); }

    /// False when the calling thread does not hold the mutex.
    bool Release()
    {
        Count(-1);
        if (Unlock() == wxMUTEX_NO_ERROR)
            return true;
        Count(1);
        // A stranger has counted: a change that the holder made meanwhile may be lost.
        m_isCountCertain.store(false, std::memory_order_relaxed);
        return false;
    }

    /// Gives up what the calling thread holds; false when another one holds the mutex.
    bool ReleaseAll()
    {
        while (m_holds.load(std::memory_order_relaxed) > 0) {
            if (!Release())
                return false;
        }
        return true;
    }

    /// Whether nobody holds the mutex, as far as can be told for certain.
    bool IsCertainlyFree() const
    {
        return m_holds.load(std::memory_order_relaxed) == 0 &&
               m_isCountCertain.load(std::memory_order_relaxed);
    }

private:
    wxMutexError Counted(wxMutexError result)
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
