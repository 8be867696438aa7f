#include "toolkit/threading/Mutex.h"

#include "toolkit/core/Assert.h"

#include <wx/log.h>
#include <wx/thread.h>

#include <atomic>

namespace Toolkit {
namespace {

constexpr unsigned int c_pollIntervalMs = 10;

} // namespace

// The framework's mutex with the number of times that it is held. The thread that holds it is the
// one that counts, so loading and storing need not be one step.
class CountedMutex : public wxMutex {
public:
    CountedMutex() : wxMutex(wxMUTEX_RECURSIVE) {}

    wxMutexError Acquire() { return Counted(Lock()); }
    wxMutexError TryAcquire() { return Counted(TryLock()); }

    bool Release()
    {
        Count(-1);
        if (Unlock() == wxMUTEX_NO_ERROR)
            return true;
        Count(1);
        return false;
    }

    // Gives up what the calling thread holds; false when another one holds the mutex.
    bool ReleaseAll()
    {
        while (m_holds.load(std::memory_order_relaxed) > 0) {
            if (!Release())
                return false;
        }
        return true;
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
};

MutexInternal::MutexInternal(bool initiallyLocked) : m_mutex(std::make_unique<CountedMutex>())
{
    ASSERT(m_mutex->IsOk());
    if (initiallyLocked)
        m_mutex->Acquire();
}

MutexInternal::~MutexInternal()
{
    // The framework reports a mutex that is held when it is destroyed.
    if (m_mutex->ReleaseAll())
        return;
    const wxLogNull silence;
    m_mutex.reset();
}

bool MutexInternal::Lock(unsigned int timeoutMs)
{
    if (timeoutMs == Infinite)
        return m_mutex->Acquire() == wxMUTEX_NO_ERROR;

    wxMutexError result = m_mutex->TryAcquire();
    if (timeoutMs < c_pollIntervalMs)
        return result == wxMUTEX_NO_ERROR;

    const unsigned int rounds = timeoutMs / c_pollIntervalMs;
    for (unsigned int round = 0; result == wxMUTEX_BUSY; ++round) {
        wxThread::Sleep(c_pollIntervalMs);
        if (round == rounds)
            break;
        result = m_mutex->TryAcquire();
    }
    return result == wxMUTEX_NO_ERROR;
}

bool MutexInternal::Unlock()
{
    return m_mutex->Release();
}

Mutex::Mutex(bool initiallyLocked) : MutexInternal(initiallyLocked) {}

Mutex::~Mutex() = default;

} // namespace Toolkit
