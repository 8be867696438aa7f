#include "toolkit/system/MacCocoa.h"

#include "toolkit/core/Assert.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

// Compiled without automatic reference counting, which forbids NSAutoreleasePool.

bool MacInitCocoa()
{
    const bool loaded = NSApplicationLoad();
    ASSERT(loaded);
    return loaded;
}

MacAutoreleasePool::MacAutoreleasePool() : m_pool([[NSAutoreleasePool alloc] init])
{
}

MacAutoreleasePool::~MacAutoreleasePool()
{
    [static_cast<NSAutoreleasePool*>(m_pool) release];
}
