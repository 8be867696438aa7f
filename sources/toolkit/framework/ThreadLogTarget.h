#pragma once

#include <wx/log.h>

namespace Toolkit::Framework {

/// The log target of a worker thread while the object exists.
///
/// Without it wxWidgets keeps the thread's messages until the main thread asks for them.
class ThreadLogTarget : public wxLog {
public:
    ThreadLogTarget();
    ~ThreadLogTarget() override;

protected:
    void DoLogRecord(wxLogLevel level, const wxString& message,
                     const wxLogRecordInfo& info) override;
};

} // namespace Toolkit::Framework
