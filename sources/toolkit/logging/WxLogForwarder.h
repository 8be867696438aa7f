#pragma once

#include "toolkit/core/Export.h"

#include <wx/log.h>

namespace Toolkit {

/// Forwards every wxWidgets log message to the process-wide logger, as a line of its own.
///
/// An application creates one after it starts the library and keeps it until it stops it. Messages
/// of a `Toolkit::Thread` arrive at once. Those of other worker threads arrive when the main thread
/// flushes the wxWidgets log, or when the forwarder is destroyed.
class TOOLKIT_API WxLogForwarder : public wxLog {
public:
    /// Becomes the active `wxLog` target; the previous one is neither deleted nor restored later.
    /// Throws `std::bad_alloc` when out of memory.
    WxLogForwarder();

    /// Leaves wxWidgets without an active log target.
    ~WxLogForwarder() override;

protected:
    /// Writes a line such as "1  : wx : 1000 : disk full" to the process-wide logger: severity,
    /// `timestamp` in seconds since 1970, and `message`. Does nothing without a process-wide
    /// logger.
    virtual void DoLog(unsigned long level, const wchar_t* message, long timestamp);

    /// Does nothing.
    virtual void DoLogString(const wchar_t* message, long timestamp);

    void DoLogRecord(wxLogLevel level, const wxString& message,
                     const wxLogRecordInfo& info) override;
};

} // namespace Toolkit
