#pragma once

#include <cstddef>

/// Simulates running out of memory. A program that uses these classes must compile
/// OutOfMemory.cpp, which replaces the operators new and delete.
namespace Toolkit::TestSupport {

/// Makes one allocation by operator new on this thread fail: `index` 0 is the next one.
class FailingAllocation {
public:
    explicit FailingAllocation(long index);
    ~FailingAllocation();

    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Whether the thread has reached that allocation.
    bool HasFailed() const;
};

/// Makes every allocation by operator new of more than `sizeBytes` bytes fail, on all threads.
class AllocationLimit {
public:
    explicit AllocationLimit(std::size_t sizeBytes);
    ~AllocationLimit();

    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;
};

/// Decides whether an allocation fails. `returnAddress` is the address to which operator new
/// returns, so it identifies the caller. Called on every thread that allocates.
using AllocationRule = bool (*)(const void* returnAddress);

/// Sets the rule for all threads; null removes it.
void SetAllocationRule(AllocationRule rule);

} // namespace Toolkit::TestSupport
