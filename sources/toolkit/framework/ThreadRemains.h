#pragma once

#include <cstddef>
#include <memory>

class wxThread;

namespace Toolkit::Framework {

/// What a discarded `wxThread` owned. It is kept, since the thread may still use it.
struct ThreadRemains {
    alignas(std::max_align_t) unsigned char bytes[128];
    ThreadRemains* next = nullptr;
};

/// Lets a `wxThread` be destroyed silently when nobody can wait for its thread: in a forked child,
/// which does not have the thread, and on the thread itself.
///
/// The destructor would take a lock that the thread may have held at the fork, wait for the thread
/// to leave its condition variables, and print that the thread still runs. This function replaces
/// `thread` by one that was never created and keeps what the old one owned in `remains`. wxWidgets
/// must not be shut down after that. While there is no memory for the new one, it waits.
void DiscardThread(wxThread& thread, std::unique_ptr<ThreadRemains> remains);

} // namespace Toolkit::Framework
