#include "toolkit/framework/InstalledForwarder.h"

#include "toolkit/base/CheckedMutex.h"
#include "toolkit/base/Fork.h"

#include <new>
#include <pthread.h>

namespace Toolkit::Framework {
namespace {

// Recursive, because a sink may use wxWidgets and so log again. Not a Mutex, because it must exist
// before the first constructor runs. Not constinit, because libc++ constructs it at load.
Base::CheckedRecursiveMutex s_lock;
wxLog* s_target BASE_GUARDED_BY(s_lock) = nullptr;
std::atomic<unsigned int> s_forks{0}; // fork count when it was installed

// Replaces the lock in a forked child: a thread that only the parent has may hold it. Not acquired
// before the fork instead, because messages are handled while it is held.
void RenewLock()
{
    new (&s_lock) Base::CheckedRecursiveMutex();
}

// False in a forked child: the queued messages are its parent's, and another thread of the parent
// may have held the lock with which wxWidgets guards them.
bool HasOwnMessages()
{
    return s_forks == Base::CountForks();
}

} // namespace

void InstallForwarder(wxLog* target)
{
    static const int isPrepared = ::pthread_atfork(nullptr, nullptr, RenewLock);
    static_cast<void>(isPrepared);

    const Base::CheckedLock lock(s_lock);
    s_target = target;
    s_forks = Base::CountForks();
}

bool RemoveForwarder(wxLog* target)
{
    const Base::CheckedLock lock(s_lock);
    if (s_target != target)
        return false;
    s_target = nullptr;
    return HasOwnMessages();
}

bool ForwardRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo& info)
{
    const Base::CheckedLock lock(s_lock);
    if (!s_target)
        return false;
    s_target->LogRecord(level, message, info);
    return true;
}

void DetachForwarder()
{
    wxLog* target = nullptr;
    {
        const Base::CheckedLock lock(s_lock);
        target = s_target;
        s_target = nullptr;
    }
    if (!target || wxLog::GetActiveTarget() != target)
        return;
    if (HasOwnMessages())
        wxLog::FlushActive();
    wxLog::SetActiveTarget(nullptr);
}

} // namespace Toolkit::Framework
