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
constexpr int c_mostRetries = 20;

// Frees a few small blocks, so that the next allocations of this thread find memory.
void ReserveMemory()
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
    if (!m_control->IsOfThisProcess() || IsCaller()) {
        HoldForEver();
        Framework::DiscardThread(*this, m_control->TakeRemains());
        return;
    }
    End();
}

void Thread::End()
{
    // The derived part is destroyed by now. A thread that has not begun its work never does.
    State started = State::Started;
    m_state.compare_exchange_strong(started, State::Dropped);
    State fresh = State::New;
    if (m_state.compare_exchange_strong(fresh, State::Dropped) && !wxThread::IsAlive()) {
        // Deleting a joinable wxThread that never ran frees it while this object still exists. So
        // start it, with nothing to do, as soon as memory allows; after too many attempts, leak it.
        for (int tries = 0; !Start(); ++tries) {
            if (tries == c_mostRetries) {
                HoldForEver();
                Framework::DiscardThread(*this, m_control->TakeRemains());
                return;
            }
            Sleep(c_retryMs);
        }
    } else {
        // wxThread::Delete() resumes a paused thread too, but fails if the thread ends meanwhile.
        Resume();
        wxThread::Delete();
    }
    // Also joins a thread that has ended. Does nothing if it was joined before.
    wxThread::Wait();
}

// wxWidgets allocates memory for trace messages, even when the thread is half started and can
// neither run nor be stopped. ReserveMemory() makes these allocations succeed.
bool Thread::Start()
{
    const bool isStarted = Base::TryOr(false, [this] {
        ReserveMemory();
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
    if (!m_control->IsOfThisProcess() || wxThread::IsAlive() ||
        !m_state.compare_exchange_strong(fresh, State::Started))
        return false;
    if (Start())
        return true;
    m_state = State::New;
    return false;
}

bool Thread::Pause()
{
    return m_control->IsOfThisProcess() && !IsCaller() && wxThread::IsRunning() &&
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
    // A caller may have started it as a wxThread, and it may be killed before it reaches Entry().
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
    return m_control->IsOfThisProcess() && wxThread::IsAlive();
}

wxThread::ExitCode Thread::Wait()
{
    return IsRunning() && !IsCaller() ? wxThread::Wait() : nullptr;
}

bool Thread::IsPaused() const
{
    return m_control->IsOfThisProcess() && wxThread::IsPaused();
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

// Replaces wxThread::TestDestroy(), whose pause can miss a resume that comes before it begins. The
// loop ends only when wxWidgets says so, because wxThread::Delete() resumes a thread it found
// paused.
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
        // Still new: a caller started it as a wxThread.
        State fresh = State::New;
        m_state.compare_exchange_strong(fresh, State::Started);
        // When out of memory, wxWidgets keeps the messages until the main thread asks for them.
        static_cast<void>(Base::Completes([&target] { target.emplace(); }));
        m_control->SetEntered();
        State started = State::Started;
        m_state.compare_exchange_strong(started, State::Working);
        if (started == State::Dropped)
            return nullptr;
    }
    // An exit code of wxWidgets is a pointer.
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
    // A thread that is cancelled on its way to Entry() ends the process: the clean-up function of
    // wxWidgets calls pthread_exit() while a destructor runs it.
    if (IsRunning() && !IsCaller())
        m_control->AwaitEntry();
}

} // namespace Toolkit
