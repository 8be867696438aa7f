#pragma once

// The life of a process-wide object that a class-wide pointer to a heap `smart_ptr` holds. Copies
// of that pointer keep the object alive after its release.
namespace Toolkit::Base {

/// Stores the object that `make` returns, unless there is one.
template <typename Pointer, typename Make>
void CreateSingleton(Pointer*& instance, Make make)
{
    if (!instance)
        instance = new Pointer(make());
}

/// A copy of the pointer; an empty one when there is no object.
template <typename Pointer>
Pointer GetSingleton(const Pointer* instance)
{
    return instance ? *instance : Pointer();
}

/// Drops the object. It can still be reached while it is destroyed.
template <typename Pointer>
void ReleaseSingleton(Pointer*& instance)
{
    if (!instance)
        return;
    *instance = nullptr;
    delete instance;
    instance = nullptr;
}

} // namespace Toolkit::Base
