#include "toolkit/threading/Mutex.h"

#include "toolkit/framework/Silence.h"
#include "toolkit/threading/CountedMutex.Private.h"
#include "toolkit/threading/MutexStock.Private.h"

#include <utility>

namespace Toolkit {
namespace {

constexpr unsigned int c_pollIntervalMs = 10;

} // namespace

MutexInternal::MutexInternal(bool initiallyLocked) : m_mutex(MutexStock::Take())
{
    if (initiallyLocked)
        m_mutex->Acquire();
}

MutexInternal::~MutexInternal()
{
    if (m_mutex->IsCertainlyFree()) {
        MutexStock::GiveBack(std::move(m_mutex));
        return;
    }
    if (m_mutex->ReleaseAll() && m_mutex->IsCertainlyFree())
        return;
    // wxWidgets reports a mutex that is held when it is destroyed.
    const Framework::Silence silence;
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
