#include "toolkit/system/MacCocoa.h"

bool MacInitCocoa()
{
    return true;
}

MacAutoreleasePool::MacAutoreleasePool() : m_pool(nullptr) {}

// Not trivial, like the destructor on macOS: the binary interface stays the same.
MacAutoreleasePool::~MacAutoreleasePool() {}
