#include "toolkit/system/MacCocoa.h"

bool MacInitCocoa()
{
    return true;
}

MacAutoreleasePool::MacAutoreleasePool() : m_pool(nullptr) {}

// Not defaulted in the header: the destructor must not be trivial, so that the binary interface is
// the same as on macOS.
MacAutoreleasePool::~MacAutoreleasePool() {}
