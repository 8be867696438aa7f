#pragma once

#include <cstddef>
#include <memory>

class wxThread;

namespace Toolkit::Framework {

/// The bytes of a discarded `wxThread`, and so everything that it owned. They are kept forever,
/// because the thread may still use what they refer to.
struct ThreadRemains {
    alignas(std::max_align_t) unsigned char bytes[128]; // at least sizeof(wxThread)
    ThreadRemains* next = nullptr;
};

/// Lets a `wxThread` be destroyed silently when nothing can wait for its thread: in a forked child,
/// which does not have the thread; on the thread itself; and if the thread cannot be started.
///
/// The destructor of `wxThread` would acquire a lock that the thread may have held at the fork,
/// wait for the thread to leave its condition variables, and print that the thread still runs. This
/// function moves the bytes of `thread` to `remains`, and constructs in their place a thread that
/// was never created. wxWidgets must not be shut down after that, because `thread` stays in its
/// list of threads. When out of memory, waits until the construction succeeds.
void DiscardThread(wxThread& thread, std::unique_ptr<ThreadRemains> remains);

} // namespace Toolkit::Framework
