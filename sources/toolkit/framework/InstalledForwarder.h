#pragma once

#include <wx/log.h>

/// The one log target that hands the framework's messages on to the process-wide logger, for
/// threads whose messages the framework itself would keep until the main thread asks for them.
///
/// Any thread may call the operations, but for `Detach`. A target is called under a lock, so that
/// it cannot go while a message is on its way.
namespace Toolkit::InstalledForwarder {

/// `target` is from now on the one; it stays the caller's.
void Set(wxLog* target);

/// There is none from now on, if `target` was the one. Returns whether it was.
bool Clear(wxLog* target);

/// Hands a message on; false when there is no target.
bool Forward(wxLogLevel level, const wxString& message, const wxLogRecordInfo& info);

/// Takes the target away from the framework, which would delete it when it shuts down. Messages
/// that other threads queued are delivered first. Called on the main thread.
void Detach();

} // namespace Toolkit::InstalledForwarder
