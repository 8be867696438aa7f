#pragma once

#include "toolkit/base/OutOfMemory.h"

// Creates, returns and releases a process-wide object. A static member of its class points to a
// `smart_ptr` on the heap. Copies of the `smart_ptr` keep the object alive after
// ReleaseSingleton(). The functions do not synchronize threads.
namespace Toolkit::Base {

/// Stores the object that `create` returns, unless one exists. Stores nothing when out of memory.
template <typename Pointer, typename Create>
void CreateSingleton(Pointer*& instance, Create create)
{
    if (!instance)
        instance = TryOr(nullptr, [&] { return new Pointer(create()); });
}

/// Returns a copy of the `smart_ptr`; an empty one if there is no object. Allocates nothing.
template <typename Pointer>
Pointer GetSingleton(const Pointer* instance)
{
    return instance ? *instance : Pointer::Empty();
}

/// Releases the object, whose destructor can still reach it through `instance`. Allocates nothing,
/// unlike the assignment of a null pointer, which creates a new count.
template <typename Pointer>
void ReleaseSingleton(Pointer*& instance)
{
    if (!instance)
        return;
    delete instance;
    instance = nullptr;
}

} // namespace Toolkit::Base
