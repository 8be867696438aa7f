#include "toolkit/threading/ThreadControl.Private.h"

#include <chrono>
#include <thread>
#include <unistd.h>

namespace Toolkit {
namespace {

// A direct call of wxThread::Resume() bypasses Wake(), so a paused thread also polls.
// wxThread::Delete() resumes a thread right after it is cancelled, so a cancelled thread polls more
// often.
constexpr std::chrono::milliseconds c_pollIntervalWhenPaused{200};
constexpr std::chrono::milliseconds c_pollIntervalWhenCancelled{1};

constexpr std::chrono::milliseconds c_entryPollInterval{1};
constexpr std::chrono::seconds c_maxEntryWait{1};

} // namespace

ThreadControl::ThreadControl()
    : m_processId(::getpid()), m_remains(std::make_unique<Framework::ThreadRemains>())
{
}

bool ThreadControl::BelongsToThisProcess() const
{
    return m_processId == ::getpid();
}

void ThreadControl::AwaitEntry() const
{
    using Clock = std::chrono::steady_clock;

    const Clock::time_point deadline = Clock::now() + c_maxEntryWait;
    while (!m_hasEntered.load(std::memory_order_acquire) && Clock::now() < deadline)
        std::this_thread::sleep_for(c_entryPollInterval);
}

void ThreadControl::Cancel()
{
    m_isCancelled.store(true, std::memory_order_release);
    Wake();
}

void ThreadControl::AwaitWake()
{
    static_cast<void>(m_wakes.try_acquire_for(IsCancelled() ? c_pollIntervalWhenCancelled
                                                            : c_pollIntervalWhenPaused));
}

} // namespace Toolkit
