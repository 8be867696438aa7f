#include "toolkit/framework/InstalledForwarder.h"

#include "toolkit/base/CheckedMutex.h"
#include "toolkit/base/Fork.h"

#include <atomic>
#include <new>
#include <pthread.h>

namespace Toolkit::Framework {
namespace {

// Recursive, because the logger may use wxWidgets, which may log in turn. Not constinit: the
// constructor of libc++'s std::recursive_mutex is not constexpr.
Base::CheckedRecursiveMutex s_lock;
wxLog* s_target BASE_GUARDED_BY(s_lock) = nullptr;
std::atomic<unsigned int> s_forksAtInstall{0}; // CountForks() when s_target was installed

// Replaces the lock in a forked child: a thread that exists only in the parent may have held it at
// the fork. Unlike the ForkLocks, the lock is not acquired before the fork, because fork() would
// then wait until the logger has handled its current message.
void ReinitializeLock()
{
    // Not destroyed first: destroying a locked mutex is undefined.
    new (&s_lock) Base::CheckedRecursiveMutex();
}

// False if the process has been forked since InstallForwarder(): the queued messages are the
// parent's, and another of its threads may have held the lock of wxWidgets that guards them.
bool OwnsQueuedMessages()
{
    return s_forksAtInstall == Base::CountForks();
}

} // namespace

void InstallForwarder(wxLog* target)
{
    // Registers the handler once; ignores a failure.
    [[maybe_unused]] static const int error = ::pthread_atfork(nullptr, nullptr, ReinitializeLock);

    const Base::CheckedLock lock(s_lock);
    s_target = target;
    s_forksAtInstall = Base::CountForks();
}

bool RemoveForwarder(wxLog* target)
{
    const Base::CheckedLock lock(s_lock);
    if (s_target != target)
        return false;
    s_target = nullptr;
    return OwnsQueuedMessages();
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
    if (OwnsQueuedMessages())
        wxLog::FlushActive();
    wxLog::SetActiveTarget(nullptr);
}

} // namespace Toolkit::Framework
