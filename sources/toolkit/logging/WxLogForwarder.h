#pragma once

#include "toolkit/core/Export.h"

#include <wx/log.h>

namespace Toolkit {

/// Forwards wxWidgets log messages to the process-wide logger, each as a line of its own.
///
/// Create one on the main thread after starting the library, keep it until the library is stopped,
/// and destroy it on the main thread. Messages of the main thread and of a `Toolkit::Thread` arrive
/// immediately. Those of other worker threads arrive when the main thread flushes the wxWidgets
/// log, or when the forwarder is destroyed; those still queued when the library is stopped are
/// lost.
class TOOLKIT_API WxLogForwarder : public wxLog {
public:
    /// Becomes the active `wxLog` target; the previous one is neither deleted nor restored later.
    /// Throws `std::bad_alloc` when out of memory.
    WxLogForwarder();

    /// Leaves wxWidgets without an active log target, even if another target has become active.
    ~WxLogForwarder() override;

protected:
    /// Writes a line such as "1  : wx : 1000 : disk full" to the process-wide logger: the severity
    /// that corresponds to `level`, `timestamp` in seconds since 1970, and `message`. `wxLOG_Info`,
    /// the level of verbose messages, corresponds to `SeverityDebug`, and an unknown level to
    /// `SeverityVerbose`. Does nothing without a process-wide logger.
    virtual void DoLog(unsigned long level, const wchar_t* message, long timestamp);

    /// Does nothing.
    virtual void DoLogString(const wchar_t* message, long timestamp);

    void DoLogRecord(wxLogLevel level, const wxString& message,
                     const wxLogRecordInfo& info) override;
};

} // namespace Toolkit
