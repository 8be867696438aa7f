#include "toolkit/system/MacCocoa.h"

bool MacInitCocoa()
{
    return true;
}

MacAutoreleasePool::MacAutoreleasePool() : m_pool(nullptr) {}

MacAutoreleasePool::~MacAutoreleasePool() = default;
