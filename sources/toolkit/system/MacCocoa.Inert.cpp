#include "toolkit/system/MacCocoa.h"

bool MacInitCocoa()
{
    return true;
}

MacAutoreleasePool::MacAutoreleasePool() : m_pool(nullptr) {}

// Not trivial, like the destructor on macOS, so that the binary interface is the same.
MacAutoreleasePool::~MacAutoreleasePool() {}
