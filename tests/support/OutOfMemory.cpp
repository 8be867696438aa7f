#include "support/OutOfMemory.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace Toolkit::TestSupport {
namespace {

// Number of allocations before the failing one; negative once it has failed.
thread_local long t_allocationsLeft = 0;
thread_local bool t_isCounting = false;

std::atomic<std::size_t> s_sizeLimit{SIZE_MAX};
std::atomic<AllocationRule> s_rule{nullptr};

bool MustFail(std::size_t size, const void* returnAddress)
{
    const AllocationRule rule = s_rule;
    return size > s_sizeLimit || (t_isCounting && t_allocationsLeft-- == 0) ||
           (rule && rule(returnAddress));
}

void* Allocate(std::size_t size, const void* returnAddress)
{
    if (MustFail(size, returnAddress))
        return nullptr;
    void* memory = std::malloc(size > 0 ? size : 1);
    // Prevents a tail call: a replaced malloc() must see a return address in this function.
    __asm__ volatile("" : "+r"(memory));
    return memory;
}

void* AllocateOrThrow(std::size_t size, const void* returnAddress)
{
    void* const memory = Allocate(size, returnAddress);
    if (!memory)
        throw std::bad_alloc();
    return memory;
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

AllocationLimit::AllocationLimit(std::size_t sizeBytes)
{
    s_sizeLimit = sizeBytes;
}

AllocationLimit::~AllocationLimit()
{
    s_sizeLimit = SIZE_MAX;
}

void SetAllocationRule(AllocationRule rule)
{
    s_rule = rule;
}

} // namespace Toolkit::TestSupport

using Toolkit::TestSupport::Allocate;
using Toolkit::TestSupport::AllocateOrThrow;

// Not inlined, so that the return address is in the caller.
__attribute__((noinline)) void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size, __builtin_return_address(0));
}

__attribute__((noinline)) void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size, __builtin_return_address(0));
}

__attribute__((noinline)) void* operator new(std::size_t size)
{
    return AllocateOrThrow(size, __builtin_return_address(0));
}

__attribute__((noinline)) void* operator new[](std::size_t size)
{
    return AllocateOrThrow(size, __builtin_return_address(0));
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
