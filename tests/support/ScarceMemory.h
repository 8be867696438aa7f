#pragma once

#include <cstddef>

/// Memory that runs out. A program that uses these classes lists ScarceMemory.cpp among its own
/// sources: it replaces the operators new and delete.
namespace Toolkit::TestSupport {

/// Lets one allocation of this thread fail: the next one for an index of 0.
class FailingAllocation {
public:
    explicit FailingAllocation(long index);
    ~FailingAllocation();

    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Whether there were so many allocations.
    bool HasFailed() const;
};

/// Lets each allocation of more than `size` bytes fail, on every thread.
class AllocationLimit {
public:
    explicit AllocationLimit(std::size_t size);
    ~AllocationLimit();

    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;
};

} // namespace Toolkit::TestSupport
