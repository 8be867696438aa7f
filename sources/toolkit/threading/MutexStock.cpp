#include "toolkit/threading/CountedMutex.Private.h"
#include "toolkit/threading/MutexStock.Private.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace Toolkit::MutexStock {
namespace {

constexpr std::size_t c_shelfCount = 8;
constexpr std::size_t c_cacheLineSize = 64;
constexpr std::size_t c_shelfSize = c_cacheLineSize / sizeof(std::atomic<CountedMutex*>);

// Threads that work side by side mostly have shelves of their own, so they do not wait for each
// other's cache line.
struct alignas(c_cacheLineSize) Shelf {
    std::array<std::atomic<CountedMutex*>, c_shelfSize> places;
};

constinit std::array<Shelf, c_shelfCount> s_shelves{};

// Chosen by where the stack is, since the stacks of two threads are far apart. Any shelf is right.
Shelf& ShelfOfThisThread()
{
    constexpr std::uint64_t spreading = 0x9E3779B97F4A7C15; // 2^64 divided by the golden ratio
    constexpr int stackBits = 20;
    constexpr int shelfBits = 61;
    const char onStack = 0;
    const std::uint64_t stack = reinterpret_cast<std::uintptr_t>(&onStack) >> stackBits;
    return s_shelves[stack * spreading >> shelfBits];
}

} // namespace

std::unique_ptr<CountedMutex> Take()
{
    for (auto& place : ShelfOfThisThread().places) {
        if (!place.load(std::memory_order_relaxed))
            continue;
        if (CountedMutex* const mutex = place.exchange(nullptr, std::memory_order_acq_rel))
            return std::unique_ptr<CountedMutex>(mutex);
    }
    return std::make_unique<CountedMutex>();
}

void GiveBack(std::unique_ptr<CountedMutex> mutex)
{
    for (auto& place : ShelfOfThisThread().places) {
        CountedMutex* nothing = nullptr;
        if (place.load(std::memory_order_relaxed) ||
            !place.compare_exchange_strong(nothing, mutex.get(), std::memory_order_acq_rel))
            continue;
        static_cast<void>(mutex.release());
        return;
    }
}

void Clear()
{
    for (Shelf& shelf : s_shelves) {
        for (auto& place : shelf.places)
            delete place.exchange(nullptr, std::memory_order_acq_rel);
    }
}

} // namespace Toolkit::MutexStock
