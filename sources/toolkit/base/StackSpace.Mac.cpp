#include "toolkit/base/StackSpace.h"

#include <pthread.h>

namespace Toolkit::Base {

StackBounds GetStackBounds()
{
    const pthread_t self = pthread_self();
    const auto end = reinterpret_cast<std::uintptr_t>(pthread_get_stackaddr_np(self));
    return {end - pthread_get_stacksize_np(self), end};
}

} // namespace Toolkit::Base
