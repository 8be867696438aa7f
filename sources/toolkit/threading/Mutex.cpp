#include "toolkit/threading/Mutex.h"

#include "toolkit/core/Assert.h"

#include <wx/log.h>
#include <wx/thread.h>

namespace Toolkit {
namespace {

constexpr unsigned int c_pollIntervalMs = 10;

} // namespace

MutexInternal::MutexInternal(bool initiallyLocked)
    : m_mutex(std::make_unique<wxMutex>(wxMUTEX_RECURSIVE))
{
    ASSERT(m_mutex->IsOk());
    if (initiallyLocked)
        m_mutex->Lock();
}

MutexInternal::~MutexInternal()
{
    // The framework reports a mutex that is held when it is destroyed.
    if (m_mutex->TryLock() == wxMUTEX_BUSY) {
        const wxLogNull silence;
        m_mutex.reset();
        return;
    }
    while (m_mutex->Unlock() == wxMUTEX_NO_ERROR) {
    }
}

bool MutexInternal::Lock(unsigned int timeoutMs)
{
    if (timeoutMs == Infinite)
        return m_mutex->Lock() == wxMUTEX_NO_ERROR;

    wxMutexError result = m_mutex->TryLock();
    if (timeoutMs < c_pollIntervalMs)
        return result == wxMUTEX_NO_ERROR;

    const unsigned int rounds = timeoutMs / c_pollIntervalMs;
    for (unsigned int round = 0; result == wxMUTEX_BUSY; ++round) {
        wxThread::Sleep(c_pollIntervalMs);
        if (round == rounds)
            break;
        result = m_mutex->TryLock();
    }
    return result == wxMUTEX_NO_ERROR;
}

bool MutexInternal::Unlock()
{
    return m_mutex->Unlock() == wxMUTEX_NO_ERROR;
}

Mutex::Mutex(bool initiallyLocked) : MutexInternal(initiallyLocked) {}

Mutex::~Mutex() = default;

} // namespace Toolkit
