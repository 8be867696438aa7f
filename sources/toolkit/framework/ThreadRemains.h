#pragma once

class wxThread;

namespace Toolkit::Framework {

/// Lets a `wxThread` be destroyed silently when nobody can wait for its thread: in a forked child,
/// which does not have the thread, and on the thread itself.
///
/// The destructor would take a lock that the thread may have held at the fork, wait for the thread
/// to leave its condition variables, and print that the thread still runs. This function replaces
/// `thread` by one that was never created and leaks what the old one owned. wxWidgets must not be
/// shut down after that.
void DiscardThread(wxThread& thread);

} // namespace Toolkit::Framework
