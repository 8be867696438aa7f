#include "toolkit/base/Fork.h"

#include <pthread.h>

namespace Toolkit::Base {
namespace {

// Not checked: the analysis cannot follow a lock that one function acquires and another releases.
void OnPrepareFork() BASE_NO_THREAD_SAFETY_ANALYSIS
{
    ForkLocks::s_unloadTasks.Lock();
    ForkLocks::s_processLogger.Lock();
    ForkLocks::s_fileLocks.Lock();
    ForkLocks::s_ownDescriptors.Lock();
}

void ReleaseLocks() BASE_NO_THREAD_SAFETY_ANALYSIS
{
    ForkLocks::s_ownDescriptors.Unlock();
    ForkLocks::s_fileLocks.Unlock();
    ForkLocks::s_processLogger.Unlock();
    ForkLocks::s_unloadTasks.Unlock();
}

void OnForkInChild()
{
    ++s_forks;
    ReleaseLocks();
}

} // namespace

constinit CheckedMutex ForkLocks::s_unloadTasks;
constinit CheckedMutex ForkLocks::s_processLogger;
constinit CheckedMutex ForkLocks::s_fileLocks;
constinit CheckedMutex ForkLocks::s_ownDescriptors;

std::atomic<unsigned int> s_forks{0};

void PrepareForks()
{
    // The system removes the handlers when the library is unloaded.
    [[maybe_unused]] static const int error =
        ::pthread_atfork(OnPrepareFork, ReleaseLocks, OnForkInChild);
}

} // namespace Toolkit::Base
