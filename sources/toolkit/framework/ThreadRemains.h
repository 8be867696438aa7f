#pragma once

class wxThread;

namespace Toolkit::Framework {

/// Prepares a `wxThread` whose thread cannot be waited for to be destroyed without a sign: in a
/// forked child, which does not have the thread, and on the thread itself.
///
/// Its destructor would take a lock that the thread may have held at the fork, wait for the thread
/// to leave its condition variables, and print that the thread still runs. `thread` is replaced by
/// one that has never been created; what belonged to the old one stays behind. wxWidgets must not
/// be shut down any more.
void DiscardThread(wxThread& thread);

} // namespace Toolkit::Framework
