#pragma once

#include "toolkit/base/CheckedMutex.h"

#include <atomic>

namespace Toolkit::Base {

/// The process-wide locks, in the order in which a thread may take them.
///
/// They are held during a fork. Otherwise a forked child would wait forever for a lock that another
/// thread of its parent held, and what the lock guards could be half changed.
struct ForkLocks {
    static CheckedMutex s_unloadTasks;
    static CheckedMutex s_processLogger;
    static CheckedMutex s_fileLocks;
    static CheckedMutex s_ownDescriptors;
};

/// Holds the locks during every later fork, and counts the forks. Further calls do nothing.
void PrepareForks();

extern std::atomic<unsigned int> s_forks;

/// The number of forks that lead from the process that loaded the library to this one. An object
/// that stores it finds out whether it is the copy in a forked child.
inline unsigned int CountForks()
{
    // Relaxed: it changes only while the child has a single thread.
    return s_forks.load(std::memory_order_relaxed);
}

} // namespace Toolkit::Base
