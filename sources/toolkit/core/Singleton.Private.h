#pragma once

#include "toolkit/core/smart_ptr.h"

/// The life of a process-wide object that is held by a class-wide pointer to a heap `smart_ptr`.
/// Copies that were handed out keep the object alive after its release.
namespace Toolkit::Singleton {

/// Stores the object that `make` gives, unless there is one.
template <typename T, typename Make>
void Create(smart_ptr<T>*& instance, Make make)
{
    if (!instance)
        instance = new smart_ptr<T>(make());
}

/// A copy of the pointer; an empty one when there is no object.
template <typename T>
smart_ptr<T> Get(const smart_ptr<T>* instance)
{
    return instance ? *instance : smart_ptr<T>();
}

/// Drops the object. It can still be reached while it is destroyed.
template <typename T>
void Release(smart_ptr<T>*& instance)
{
    if (!instance)
        return;
    *instance = nullptr;
    delete instance;
    instance = nullptr;
}

} // namespace Toolkit::Singleton
