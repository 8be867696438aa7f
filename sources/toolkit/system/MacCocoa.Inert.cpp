#include "toolkit/system/MacCocoa.h"

bool MacInitCocoa()
{
    return true;
}

MacAutoreleasePool::MacAutoreleasePool() : m_pool(nullptr) {}

// Where there are pools the destructor has work to do, so it is no trivial one here either.
MacAutoreleasePool::~MacAutoreleasePool() {}
