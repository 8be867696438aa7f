#include "toolkit/system/MacCocoa.h"

bool MacInitCocoa()
{
    return true;
}

MacAutoreleasePool::MacAutoreleasePool() : m_pool(nullptr) {}

// Not defaulted in the header: like that on macOS, this destructor must not be trivial, so that the
// binary interface is the same.
MacAutoreleasePool::~MacAutoreleasePool() {}
