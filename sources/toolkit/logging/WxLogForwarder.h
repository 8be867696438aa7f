#pragma once

#include "toolkit/core/Export.h"

#include <wx/log.h>

namespace Toolkit {

/// Forwards every wxWidgets log message to the process-wide logger, as a line of its own.
///
/// Create one after starting the library, and keep it until the library is stopped. Messages of the
/// main thread and of a `Toolkit::Thread` arrive immediately. Those of other worker threads arrive
/// when the main thread flushes the wxWidgets log, or when the forwarder is destroyed.
class TOOLKIT_API WxLogForwarder : public wxLog {
public:
    /// Becomes the active `wxLog` target; the previous one is neither deleted nor restored later.
    /// Throws `std::bad_alloc` when out of memory.
    WxLogForwarder();

    /// Leaves wxWidgets without an active log target.
    ~WxLogForwarder() override;

protected:
    /// Writes a line such as "1  : wx : 1000 : disk full" to the process-wide logger: the severity
    /// that corresponds to `level`, `timestamp` in seconds since 1970, and `message`. Does nothing
    /// without a process-wide logger.
    virtual void DoLog(unsigned long level, const wchar_t* message, long timestamp);

    /// Does nothing.
    virtual void DoLogString(const wchar_t* message, long timestamp);

    void DoLogRecord(wxLogLevel level, const wxString& message,
                     const wxLogRecordInfo& info) override;
};

} // namespace Toolkit
