#include "toolkit/regExp/FreshStack.Private.h"

#include <csignal>
#include <cstddef>
#include <pthread.h>

namespace Toolkit {
namespace {

// The usual stack size of a main thread, in bytes. Only the pages that are used need memory.
constexpr std::size_t c_stackSize = std::size_t{8} * 1024 * 1024;

struct Work {
    void (*function)(void*);
    void* argument;
};

void* RunWork(void* work)
{
    const auto [function, argument] = *static_cast<Work*>(work);
    function(argument);
    return nullptr;
}

// Blocks all signals for the new thread, which inherits the mask of its creator: the program's
// signal handlers run only on the program's own threads.
bool CreateWithoutSignals(pthread_t& thread, const pthread_attr_t& attributes, Work& work)
{
    sigset_t all;
    sigset_t previous;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &previous);
    const int error = pthread_create(&thread, &attributes, RunWork, &work);
    pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    return error == 0;
}

} // namespace

bool CallOnFreshStack(void (*function)(void*), void* argument)
{
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0)
        return false;
    Work work{function, argument};
    pthread_t thread{};
    const bool isCreated = pthread_attr_setstacksize(&attributes, c_stackSize) == 0 &&
                           CreateWithoutSignals(thread, attributes, work);
    pthread_attr_destroy(&attributes);
    return isCreated && pthread_join(thread, nullptr) == 0;
}

} // namespace Toolkit
