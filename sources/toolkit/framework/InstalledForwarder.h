#pragma once

#include <wx/log.h>

// The one log target that hands the messages of wxWidgets on to the process-wide logger, for
// threads whose messages wxWidgets itself would keep until the main thread asks for them.
//
// Any thread may call these functions, except DetachForwarder(). A target is called under a lock,
// so that it cannot go while a message is on its way.
namespace Toolkit::Framework {

/// Makes `target` the installed one; it stays the caller's.
void InstallForwarder(wxLog* target);

/// Leaves none installed if `target` was the one. Returns whether it was.
bool RemoveForwarder(wxLog* target);

/// Hands a record on; false when there is no target.
bool ForwardRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo& info);

/// Takes the target away from wxWidgets, which would delete it when it shuts down. Messages that
/// other threads queued are delivered first. Called on the main thread.
void DetachForwarder();

} // namespace Toolkit::Framework
