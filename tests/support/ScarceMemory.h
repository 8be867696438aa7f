#pragma once

#include <cstddef>

/// Simulates running out of memory. A program that uses these classes compiles ScarceMemory.cpp
/// into itself, which replaces the operators new and delete.
namespace Toolkit::TestSupport {

/// Makes one allocation of this thread fail: index 0 is the next one.
class FailingAllocation {
public:
    explicit FailingAllocation(long index);
    ~FailingAllocation();

    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Whether the allocation was reached.
    bool HasFailed() const;
};

/// Makes every allocation of more than `size` bytes fail, on all threads.
class AllocationLimit {
public:
    explicit AllocationLimit(std::size_t size);
    ~AllocationLimit();

    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;
};

/// Decides whether an allocation fails by the address to which operator new returns. Any thread may
/// call it.
using AllocationRule = bool (*)(const void* returnAddress);

/// Null removes the rule.
void SetAllocationRule(AllocationRule rule);

} // namespace Toolkit::TestSupport
