#pragma once

#include "toolkit/base/OutOfMemory.h"

// The life of a process-wide object that a class-wide pointer to a heap `smart_ptr` holds. Copies
// of that pointer keep the object alive after its release.
namespace Toolkit::Base {

/// Stores the object that `make` returns, unless there is one. When out of memory there is none.
template <typename Pointer, typename Make>
void CreateSingleton(Pointer*& instance, Make make)
{
    if (!instance)
        instance = ResultOr(nullptr, [&] { return new Pointer(make()); });
}

/// A copy of the pointer; an empty one when there is no object. Allocates nothing.
template <typename Pointer>
Pointer GetSingleton(const Pointer* instance)
{
    return instance ? *instance : Pointer::Empty();
}

/// Drops the object, which can still be reached while it is destroyed. Allocates nothing: assigning
/// a null pointer would make a new count.
template <typename Pointer>
void ReleaseSingleton(Pointer*& instance)
{
    if (!instance)
        return;
    delete instance;
    instance = nullptr;
}

} // namespace Toolkit::Base
