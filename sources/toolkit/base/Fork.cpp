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

void OnForkInParent() BASE_NO_THREAD_SAFETY_ANALYSIS
{
    ForkLocks::s_ownDescriptors.Unlock();
    ForkLocks::s_fileLocks.Unlock();
    ForkLocks::s_processLogger.Unlock();
    ForkLocks::s_unloadTasks.Unlock();
}

void OnForkInChild()
{
    ++s_forks;
    OnForkInParent();
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
    static const int isPrepared = ::pthread_atfork(OnPrepareFork, OnForkInParent, OnForkInChild);
    static_cast<void>(isPrepared);
}

} // namespace Toolkit::Base
