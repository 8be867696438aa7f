#pragma once

#include <wx/log.h>

namespace Toolkit::Framework {

/// The log target of a worker thread, from construction to destruction, both on that thread.
///
/// Without it, wxWidgets queues the thread's messages until the main thread flushes them.
class ThreadLogTarget : public wxLog {
public:
    ThreadLogTarget();
    ~ThreadLogTarget() override;

protected:
    void DoLogRecord(wxLogLevel level, const wxString& message,
                     const wxLogRecordInfo& info) override;
};

} // namespace Toolkit::Framework
