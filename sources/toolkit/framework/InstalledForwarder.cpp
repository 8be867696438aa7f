#include "toolkit/framework/InstalledForwarder.h"

#include <mutex>

namespace Toolkit::Framework {
namespace {

// Recursive, because a sink may use wxWidgets and so log again. Not a Mutex, because it must exist
// before the first constructor runs.
std::recursive_mutex s_lock;
wxLog* s_target = nullptr; // guarded by s_lock

} // namespace

void InstallForwarder(wxLog* target)
{
    const std::lock_guard<std::recursive_mutex> lock(s_lock);
    s_target = target;
}

bool RemoveForwarder(wxLog* target)
{
    const std::lock_guard<std::recursive_mutex> lock(s_lock);
    if (s_target != target)
        return false;
    s_target = nullptr;
    return true;
}

bool ForwardRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo& info)
{
    const std::lock_guard<std::recursive_mutex> lock(s_lock);
    if (!s_target)
        return false;
    s_target->LogRecord(level, message, info);
    return true;
}

void DetachForwarder()
{
    wxLog* target = nullptr;
    {
        const std::lock_guard<std::recursive_mutex> lock(s_lock);
        target = s_target;
        s_target = nullptr;
    }
    if (!target || wxLog::GetActiveTarget() != target)
        return;
    wxLog::FlushActive();
    wxLog::SetActiveTarget(nullptr);
}

} // namespace Toolkit::Framework
