#pragma once

#include "toolkit/core/Export.h"

/// On macOS, calls `NSApplicationLoad()`, which a process that is not packaged as an application
/// needs before it uses desktop services, and returns whether that succeeded. On other systems,
/// does nothing and returns true.
TOOLKIT_API bool MacInitCocoa();

/// An NSAutoreleasePool for a scope. A thread that uses the Objective-C runtime keeps one for its
/// whole lifetime. Does nothing outside macOS.
class TOOLKIT_API MacAutoreleasePool {
public:
    MacAutoreleasePool();
    ~MacAutoreleasePool();

    MacAutoreleasePool(const MacAutoreleasePool&) = delete;
    MacAutoreleasePool& operator=(const MacAutoreleasePool&) = delete;

private:
    [[maybe_unused]] void* m_pool; // not used outside macOS: keeps the layout the same
};
