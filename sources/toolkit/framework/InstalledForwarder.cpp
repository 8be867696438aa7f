#include "toolkit/framework/InstalledForwarder.h"

#include "toolkit/base/CheckedMutex.h"

namespace Toolkit::Framework {
namespace {

// Recursive, because a sink may use wxWidgets and so log again. Not a Mutex, because it must exist
// before the first constructor runs.
constinit Base::CheckedRecursiveMutex s_lock;
wxLog* s_target BASE_GUARDED_BY(s_lock) = nullptr;

} // namespace

void InstallForwarder(wxLog* target)
{
    const Base::CheckedLock lock(s_lock);
    s_target = target;
}

bool RemoveForwarder(wxLog* target)
{
    const Base::CheckedLock lock(s_lock);
    if (s_target != target)
        return false;
    s_target = nullptr;
    return true;
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
    wxLog::FlushActive();
    wxLog::SetActiveTarget(nullptr);
}

} // namespace Toolkit::Framework
