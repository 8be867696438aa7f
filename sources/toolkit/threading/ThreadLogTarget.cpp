#include "toolkit/threading/ThreadLogTarget.Private.h"

#include "toolkit/threading/InstalledForwarder.Private.h"

namespace Toolkit {

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
    if (InstalledForwarder::Forward(level, message, info))
        return;
    // Without a forwarder the message goes the framework's own way, as if this target were not
    // there.
    wxLog::SetThreadActiveTarget(nullptr);
    wxLog::OnLog(level, message, info);
    wxLog::SetThreadActiveTarget(this);
}

} // namespace Toolkit
