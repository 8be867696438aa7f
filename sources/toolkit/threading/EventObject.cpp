#include "toolkit/threading/EventObject.h"

#include <wx/thread.h>

#include <algorithm>
#include <utility>

namespace Toolkit {

const unsigned int EventObject::s_uMinSlice = 200;

EventObject::EventObject(bool autoReset, bool initiallySignalled)
    : m_signalled(initiallySignalled), m_autoReset(autoReset), m_lock(false)
{
}

EventObject::~EventObject() = default;

void EventObject::Signal()
{
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
    return m_autoReset ? std::exchange(m_signalled, false) : m_signalled;
}

} // namespace Toolkit
