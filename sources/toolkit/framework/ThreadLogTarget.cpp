#include "toolkit/framework/ThreadLogTarget.h"

#include "toolkit/framework/InstalledForwarder.h"

namespace Toolkit {
namespace {

// Where and when a message was logged, without what the framework has made part of its text by now:
// it would append that a second time.
wxLogRecordInfo WithoutExtraData(const wxLogRecordInfo& info)
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
    const wxLogRecordInfo plain = WithoutExtraData(info);
    if (InstalledForwarder::Forward(level, message, plain))
        return;
    // Without a forwarder the message goes the framework's own way, as if this target were not
    // there.
    wxLog::SetThreadActiveTarget(nullptr);
    wxLog::OnLog(level, message, plain);
    wxLog::SetThreadActiveTarget(this);
}

} // namespace Toolkit
