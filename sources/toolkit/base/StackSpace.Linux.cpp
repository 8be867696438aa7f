#include "toolkit/base/StackSpace.h"

#include <pthread.h>

namespace Toolkit::Base {

StackBounds GetStackBounds()
{
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0)
        return {0, 0};

    void* address = nullptr;
    std::size_t size = 0;
    const int failed = pthread_attr_getstack(&attributes, &address, &size);
    pthread_attr_destroy(&attributes);
    if (failed)
        return {0, 0};
    const auto begin = reinterpret_cast<std::uintptr_t>(address);
    return {begin, begin + size};
}

} // namespace Toolkit::Base
