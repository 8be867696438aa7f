#include "toolkit/threading/ThreadControl.Private.h"

#include <chrono>
#include <unistd.h>

namespace Toolkit {
namespace {

// wxThread::Resume() wakes nobody here.
constexpr std::chrono::milliseconds c_longestWait{200};

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
    static_cast<void>(m_wakes.try_acquire_for(c_longestWait));
}

} // namespace Toolkit
