#pragma once

#include <wx/log.h>

namespace Toolkit::Framework {

/// The log target of a worker thread, from construction to destruction, both on that thread.
///
/// Passes the thread's messages to the installed forwarder immediately. Without a forwarder, as
/// without this object, wxWidgets queues them until the main thread flushes them.
class ThreadLogTarget : public wxLog {
public:
    ThreadLogTarget();
    ~ThreadLogTarget() override;

protected:
    void DoLogRecord(wxLogLevel level, const wxString& message,
                     const wxLogRecordInfo& info) override;
};

} // namespace Toolkit::Framework
