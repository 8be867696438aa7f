#pragma once

#include <wx/log.h>

// The one log target that forwards messages of wxWidgets to the process-wide logger. It serves the
// threads whose messages wxWidgets would otherwise queue until the main thread flushes them.
//
// Any thread may call these functions, except DetachForwarder(). The target is called while a lock
// is held, so that it is not destroyed while it handles a message.
namespace Toolkit::Framework {

/// Installs `target` instead of the previous one. The caller still owns it, and calls
/// RemoveForwarder() before it destroys it.
void InstallForwarder(wxLog* target);

/// Removes `target` if it is the installed one. Returns true if it was and the caller may deliver
/// the messages that other threads have queued: a forked child must leave them to its parent.
bool RemoveForwarder(wxLog* target);

/// Passes a record to the installed target; false if there is none.
bool ForwardRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo& info);

/// Removes the installed target. If it is also the active target of wxWidgets, delivers the
/// messages that other threads have queued, except in a forked child, and then deactivates it,
/// because wxWidgets deletes its active target at shutdown. Call it on the main thread.
void DetachForwarder();

} // namespace Toolkit::Framework
