#pragma once

#include "toolkit/base/OutOfMemory.h"

// Lifetime of a process-wide object: a class-wide pointer holds a `smart_ptr` on the heap. Copies
// of the `smart_ptr` keep the object alive after its release.
namespace Toolkit::Base {

/// Stores the object that `make` returns, unless one exists. Stores nothing when out of memory.
template <typename Pointer, typename Make>
void CreateSingleton(Pointer*& instance, Make make)
{
    if (!instance)
        instance = TryOr(nullptr, [&] { return new Pointer(make()); });
}

/// A copy of the pointer; an empty one when there is no object. Allocates nothing.
template <typename Pointer>
Pointer GetSingleton(const Pointer* instance)
{
    return instance ? *instance : Pointer::Empty();
}

/// Releases the object, which is still reachable during its destruction. Allocates nothing:
/// assigning a null pointer would create a new count.
template <typename Pointer>
void ReleaseSingleton(Pointer*& instance)
{
    if (!instance)
        return;
    delete instance;
    instance = nullptr;
}

} // namespace Toolkit::Base
