#pragma once

#include "toolkit/base/CheckedMutex.h"

#include <atomic>

namespace Toolkit::Base {

/// The process-wide locks, in the order in which a thread may acquire them.
///
/// They are held during a fork. Otherwise a forked child would wait forever for a lock that another
/// thread of its parent held, and the data that this lock guards could be half changed.
struct ForkLocks {
    static CheckedMutex s_unloadTasks;
    static CheckedMutex s_processLogger;
    static CheckedMutex s_fileLocks;
    static CheckedMutex s_ownDescriptors;
};

/// Registers handlers that hold the locks during every later fork, and that count forks. Further
/// calls do nothing, even if the first call ran out of memory and registered nothing.
void PrepareForks();

// What CountForks() returns; each forked child increments its own copy.
extern std::atomic<unsigned int> s_forks;

/// Returns the number of forks between the process that loaded the library and this one. An object
/// that stores the number can later detect that it is the copy in a forked child.
inline unsigned int CountForks()
{
    // Relaxed: the count changes only while the child has a single thread.
    return s_forks.load(std::memory_order_relaxed);
}

} // namespace Toolkit::Base
