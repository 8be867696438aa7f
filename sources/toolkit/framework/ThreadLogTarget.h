#pragma once

#include <wx/log.h>

namespace Toolkit {

/// The framework's log target of a worker thread while the object lives.
///
/// Without it the framework keeps the thread's messages until the main thread asks for them.
class ThreadLogTarget : public wxLog {
public:
    ThreadLogTarget();
    ~ThreadLogTarget() override;

protected:
    void DoLogRecord(wxLogLevel level, const wxString& message,
                     const wxLogRecordInfo& info) override;
};

} // namespace Toolkit
