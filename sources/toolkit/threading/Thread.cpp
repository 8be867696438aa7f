#include "toolkit/threading/Thread.h"

#include "toolkit/core/Assert.h"
#include "toolkit/framework/ThreadLogTarget.h"

#include <cstdint>

namespace Toolkit {

const unsigned long Thread::UndefinedThread = 0xFFFFFFFF;

Thread::Thread() : wxThread(wxTHREAD_JOINABLE)
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
    State fresh = State::New;
    if (m_state.compare_exchange_strong(fresh, State::Dropped)) {
        // The framework frees a joinable thread that never ran from under this object. Let it run,
        // with nothing to do.
        wxThread::Run();
    } else {
        // The framework's Delete() resumes a paused thread too, but without its lock: a thread that
        // was just about to pause would stay so for ever.
        Resume();
        wxThread::Delete();
    }
    // Joins also a thread that has ended; one that was joined before is left alone.
    wxThread::Wait();
}

bool Thread::Run()
{
    State fresh = State::New;
    if (!m_state.compare_exchange_strong(fresh, State::Started))
        return false;
    return wxThread::Run() == wxTHREAD_NO_ERROR;
}

bool Thread::Pause()
{
    return wxThread::IsRunning() && wxThread::Pause() == wxTHREAD_NO_ERROR;
}

bool Thread::Resume()
{
    return wxThread::IsPaused() && wxThread::Resume() == wxTHREAD_NO_ERROR;
}

wxThreadError Thread::Kill()
{
    if (!wxThread::IsAlive())
        return wxTHREAD_NOT_RUNNING;
    return wxThread::Kill();
}

void Thread::Sleep(unsigned int ms)
{
    wxThread::Sleep(ms);
}

bool Thread::IsRunning() const
{
    return wxThread::IsAlive();
}

wxThread::ExitCode Thread::Wait()
{
    return IsRunning() ? wxThread::Wait() : nullptr;
}

bool Thread::IsPaused() const
{
    return wxThread::IsPaused();
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
    return wxThread::IsMain();
}

wxThread::ExitCode Thread::Entry()
{
    if (m_state != State::Started)
        return nullptr;
    const Framework::ThreadLogTarget target;
    // The exit codes of the framework are pointers.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    return reinterpret_cast<ExitCode>(static_cast<std::intptr_t>(DoWork()));
}

} // namespace Toolkit
