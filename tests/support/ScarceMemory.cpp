#include "support/ScarceMemory.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace Toolkit::TestSupport {
namespace {

// Counts down to the failing allocation, and on below zero.
thread_local long t_allocationsLeft = 0;
thread_local bool t_isCounting = false;

std::atomic<std::size_t> s_longest{SIZE_MAX};

bool Fails(std::size_t size)
{
    return size > s_longest || (t_isCounting && t_allocationsLeft-- == 0);
}

} // namespace

FailingAllocation::FailingAllocation(long index)
{
    t_allocationsLeft = index;
    t_isCounting = true;
}

FailingAllocation::~FailingAllocation()
{
    t_isCounting = false;
}

bool FailingAllocation::HasFailed() const
{
    return t_allocationsLeft < 0;
}

AllocationLimit::AllocationLimit(std::size_t size)
{
    s_longest = size;
}

AllocationLimit::~AllocationLimit()
{
    s_longest = SIZE_MAX;
}

} // namespace Toolkit::TestSupport

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return Toolkit::TestSupport::Fails(size) ? nullptr : std::malloc(size > 0 ? size : 1);
}

void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept
{
    return operator new(size, nothrow);
}

void* operator new(std::size_t size)
{
    void* const memory = operator new(size, std::nothrow);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}
