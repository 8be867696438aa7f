#include "toolkit/threading/Thread.h"

#include "toolkit/base/MainThread.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/core/Assert.h"
#include "toolkit/framework/Framework.h"
#include "toolkit/framework/ThreadLogTarget.h"
#include "toolkit/framework/ThreadRemains.h"
#include "toolkit/threading/ThreadControl.Private.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace Toolkit {
namespace {

constexpr unsigned int c_retryMs = 10;
constexpr int c_maxRetries = 20;

// Allocates and frees a few small blocks, so that the next allocations of this thread reuse them.
void PrimeAllocator()
{
    std::vector<std::unique_ptr<char[]>> blocks;
    for (const std::size_t size : {32u, 64u, 128u, 256u}) {
        for (int i = 0; i < 4; ++i)
            blocks.push_back(std::make_unique<char[]>(size));
    }
}

} // namespace

const unsigned long Thread::UndefinedThread = 0xFFFFFFFF;

Thread::Thread() : wxThread(wxTHREAD_JOINABLE), m_control(std::make_unique<ThreadControl>())
{
    constexpr unsigned int defaultStackSize = 0;
    const bool isCreated = wxThread::Create(defaultStackSize) == wxTHREAD_NO_ERROR;
    ASSERT(isCreated);
    if (!isCreated)
        m_state = State::Failed;
}

Thread::~Thread()
{
    if (m_state == State::Failed)
        return;
    if (!m_control->BelongsToThisProcess() || IsCaller()) {
        HoldForEver();
        Framework::DiscardThread(*this, m_control->TakeRemains());
        return;
    }
    End();
}

void Thread::End()
{
    // The derived part is already destroyed, so a thread that has not called DoWork() never calls
    // it.
    State started = State::Started;
    m_state.compare_exchange_strong(started, State::Dropped);
    State fresh = State::New;
    if (m_state.compare_exchange_strong(fresh, State::Dropped) && !wxThread::IsAlive()) {
        // For a joinable thread that never ran, wxThread::Delete() frees the object, which is
        // already being destroyed. So the thread is started, with nothing to do, as soon as memory
        // allows; after too many retries it is leaked.
        for (int retries = 0; !Start(); ++retries) {
            if (retries == c_maxRetries) {
                HoldForEver();
                Framework::DiscardThread(*this, m_control->TakeRemains());
                return;
            }
            Sleep(c_retryMs);
        }
    } else {
        // wxThread::Delete() would resume a paused thread, but fails if the thread ends during the
        // call.
        Resume();
        wxThread::Delete();
    }
    // Also joins a thread that has ended. Does nothing if it was joined before.
    wxThread::Wait();
}

// wxWidgets allocates memory for trace messages even while the thread is half started and can
// neither run nor be stopped. PrimeAllocator() makes these allocations succeed.
bool Thread::Start()
{
    const bool isStarted = Base::TryOr(false, [this] {
        PrimeAllocator();
        return wxThread::Run() == wxTHREAD_NO_ERROR;
    });
    return isStarted || wxThread::IsAlive();
}

// Whether the caller is this thread.
bool Thread::IsCaller() const
{
    return wxThread::This() == this;
}

bool Thread::Run()
{
    State fresh = State::New;
    if (!m_control->BelongsToThisProcess() || wxThread::IsAlive() ||
        !m_state.compare_exchange_strong(fresh, State::Started))
        return false;
    if (Start())
        return true;
    m_state = State::New;
    return false;
}

bool Thread::Pause()
{
    return m_control->BelongsToThisProcess() && !IsCaller() && wxThread::IsRunning() &&
           wxThread::Pause() == wxTHREAD_NO_ERROR;
}

bool Thread::Resume()
{
    if (!IsPaused() || IsCaller() || wxThread::Resume() != wxTHREAD_NO_ERROR)
        return false;
    m_control->Wake();
    return true;
}

wxThreadError Thread::Kill()
{
    if (!IsRunning())
        return wxTHREAD_NOT_RUNNING;
    if (IsCaller())
        return wxTHREAD_MISC_ERROR;
    // A thread that was started by wxThread::Run() is still New until it reaches Entry().
    State fresh = State::New;
    m_state.compare_exchange_strong(fresh, State::Started);
    return wxThread::Kill();
}

void Thread::Sleep(unsigned int ms)
{
    wxThread::Sleep(ms);
}

bool Thread::IsRunning() const
{
    return m_control->BelongsToThisProcess() && wxThread::IsAlive();
}

wxThread::ExitCode Thread::Wait()
{
    return IsRunning() && !IsCaller() ? wxThread::Wait() : nullptr;
}

bool Thread::IsPaused() const
{
    return m_control->BelongsToThisProcess() && wxThread::IsPaused();
}

unsigned long Thread::GetId() const
{
    return wxThread::GetId();
}

unsigned long Thread::GetCurrentId()
{
    return wxThread::GetCurrentId();
}

bool Thread::IsMainThread()
{
    return Framework::DoesProgramRunItsOwnApplication() ? wxThread::IsMain()
                                                        : Base::IsFirstThread();
}

// Replaces wxThread::TestDestroy(), which can miss a resume that comes just before it pauses. Loops
// until wxWidgets no longer reports a pause, even if the thread is cancelled: wxThread::Delete()
// first cancels a paused thread and then resumes it.
bool Thread::TestDestroy()
{
    while (IsCaller() && wxThread::IsPaused())
        m_control->AwaitWake();
    return m_control->IsCancelled();
}

wxThread::ExitCode Thread::Entry()
{
    std::optional<Framework::ThreadLogTarget> target;
    if (IsCaller()) {
        // Still New if it was started by wxThread::Run().
        State fresh = State::New;
        m_state.compare_exchange_strong(fresh, State::Started);
        // If there is not enough memory for the target, wxWidgets queues the messages of this
        // thread until the main thread flushes them.
        static_cast<void>(Base::RunsWithoutThrowing([&target] { target.emplace(); }));
        m_control->SetEntered();
        State started = State::Started;
        m_state.compare_exchange_strong(started, State::Working);
        if (started == State::Dropped)
            return nullptr;
    }
    // wxThread::ExitCode is a pointer.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    return reinterpret_cast<ExitCode>(static_cast<std::intptr_t>(DoWork()));
}

void Thread::OnDelete()
{
    m_control->Cancel();
}

void Thread::OnKill()
{
    m_control->Cancel();
    // Cancelling a thread before it reaches Entry() would end the process: the unwinding runs the
    // clean-up function of wxWidgets in a destructor, and that function calls pthread_exit().
    if (IsRunning() && !IsCaller())
        m_control->AwaitEntry();
}

} // namespace Toolkit
