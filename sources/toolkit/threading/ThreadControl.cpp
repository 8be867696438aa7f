#include "toolkit/threading/ThreadControl.Private.h"

#include <chrono>
#include <unistd.h>

namespace Toolkit {
namespace {

// wxThread::Resume() does not call Wake(). A cancelled thread expects it soon, so it polls faster.
constexpr std::chrono::milliseconds c_longestWait{200};
constexpr std::chrono::milliseconds c_cancelledWait{1};

} // namespace

ThreadControl::ThreadControl() : m_process(::getpid()) {}

bool ThreadControl::IsOfThisProcess() const
{
    return m_process == ::getpid();
}

void ThreadControl::Cancel()
{
    m_isCancelled.store(true, std::memory_order_release);
    Wake();
}

void ThreadControl::AwaitWake()
{
    static_cast<void>(m_wakes.try_acquire_for(IsCancelled() ? c_cancelledWait : c_longestWait));
}

} // namespace Toolkit
