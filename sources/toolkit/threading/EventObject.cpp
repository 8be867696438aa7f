#include "toolkit/threading/EventObject.h"

#include <wx/thread.h>

#include <algorithm>

namespace Toolkit {

const unsigned int EventObject::s_uMinSlice = 200;

EventObject::EventObject(bool autoReset, bool initiallySignalled)
    : m_signalled(initiallySignalled), m_autoReset(autoReset), m_lock(false)
{
}

EventObject::~EventObject() = default;

void EventObject::Signal()
{
    // Writers of a busy queue signal far more often than the reader looks, so a flag that is set
    // already takes no lock. Exchanging the flag, instead of reading it, orders what the caller did
    // before the signal with the reset by a waiter.
    bool signalled = true;
    if (m_signalled.compare_exchange_strong(signalled, true))
        return;
    const MutexLocker locker(m_lock, MutexInternal::Infinite);
    m_signalled = true;
}

void EventObject::Reset()
{
    const MutexLocker locker(m_lock, MutexInternal::Infinite);
    m_signalled = false;
}

bool EventObject::Wait(unsigned int timeoutMs)
{
    while (!TestAndReset()) {
        if (timeoutMs == 0)
            return false;
        const unsigned int slice = std::min(timeoutMs, s_uMinSlice);
        wxThread::Sleep(slice);
        if (timeoutMs != MutexInternal::Infinite)
            timeoutMs -= slice;
    }
    return true;
}

bool EventObject::TestAndReset()
{
    const MutexLocker locker(m_lock, MutexInternal::Infinite);
    return m_autoReset ? m_signalled.exchange(false) : m_signalled.load();
}

} // namespace Toolkit
