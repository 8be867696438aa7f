#pragma once

#include "toolkit/core/Export.h"

#include <wx/log.h>

namespace Toolkit {

/// Hands every message of the framework's log on to the process-wide logger, as a line of its own.
///
/// An application creates one after the start of the library and keeps it until the stop. Messages
/// of worker threads arrive at once when the thread is a `Toolkit::Thread`; those of other threads
/// when the main thread flushes the framework's log, at the latest when the forwarder goes.
class TOOLKIT_API WxLogForwarder : public wxLog {
public:
    /// Becomes the framework's active log target; the previous one is forgotten, not deleted.
    WxLogForwarder();

    /// Leaves the framework without a log target of its own; the previous one does not come back.
    ~WxLogForwarder() override;

protected:
    /// Writes a line such as "1  : wx : 1000 : disk full" to the process-wide logger: severity,
    /// `timestamp` in seconds since 1970, and `message`. Nothing is written while there is none.
    virtual void DoLog(unsigned long level, const wchar_t* message, long timestamp);

    /// Does nothing.
    virtual void DoLogString(const wchar_t* message, long timestamp);

    void DoLogRecord(wxLogLevel level, const wxString& message,
                     const wxLogRecordInfo& info) override;
};

} // namespace Toolkit
