#include "toolkit/framework/ThreadLogTarget.h"

#include "toolkit/framework/InstalledForwarder.h"

namespace Toolkit::Framework {
namespace {

// Copies the source location, time and thread of a message, but not the extra data: wxWidgets has
// already appended that to the message, and would append it again.
wxLogRecordInfo CopyWithoutExtraData(const wxLogRecordInfo& info)
{
    wxLogRecordInfo plain(info.filename, info.line, info.func, info.component);
    plain.timestampMS = info.timestampMS;
    plain.threadId = info.threadId;
    return plain;
}

} // namespace

ThreadLogTarget::ThreadLogTarget()
{
    wxLog::SetThreadActiveTarget(this);
}

ThreadLogTarget::~ThreadLogTarget()
{
    wxLog::SetThreadActiveTarget(nullptr);
}

void ThreadLogTarget::DoLogRecord(wxLogLevel level, const wxString& message,
                                  const wxLogRecordInfo& info)
{
    const wxLogRecordInfo plain = CopyWithoutExtraData(info);
    if (ForwardRecord(level, message, plain))
        return;
    // Without a forwarder wxWidgets handles the message as if this target did not exist.
    wxLog::SetThreadActiveTarget(nullptr);
    wxLog::OnLog(level, message, plain);
    wxLog::SetThreadActiveTarget(this);
}

} // namespace Toolkit::Framework
