#pragma once

#include <wx/log.h>

// The one log target that forwards messages of wxWidgets to the process-wide logger. It serves the
// threads whose messages wxWidgets would keep until the main thread asks for them.
//
// Any thread may call these functions, except DetachForwarder(). The target is called under a lock,
// so that it is not destroyed while it handles a message.
namespace Toolkit::Framework {

/// Installs `target`, which the caller keeps owning.
void InstallForwarder(wxLog* target);

/// Removes `target` if it is the installed one. Returns whether it was, and messages that other
/// threads have queued can be delivered: a forked child must leave those to its parent.
bool RemoveForwarder(wxLog* target);

/// Passes a record to the target; false without one.
bool ForwardRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo& info);

/// Removes the target from wxWidgets, which would delete it at shutdown. First delivers the
/// messages that other threads have queued. Called on the main thread.
void DetachForwarder();

} // namespace Toolkit::Framework
