#pragma once

#include "toolkit/core/Export.h"

/// Loads what a process that is not packaged as an application needs to use the desktop's services.
/// True on success; elsewhere than on macOS nothing has to be loaded, and the answer is true.
TOOLKIT_API bool MacInitCocoa();

/// Frees what the desktop's object runtime hands out while the object lives. A thread that uses
/// that runtime has one for its lifetime. Elsewhere than on macOS it does nothing.
class TOOLKIT_API MacAutoreleasePool {
public:
    MacAutoreleasePool();
    ~MacAutoreleasePool();

    MacAutoreleasePool(const MacAutoreleasePool&) = delete;
    MacAutoreleasePool& operator=(const MacAutoreleasePool&) = delete;

private:
    [[maybe_unused]] void* m_pool; // outside of macOS unused, keeps the layout
};
