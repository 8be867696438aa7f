#include "scale/HeapMeter.h"

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

std::atomic<std::size_t> allocated{0};
std::atomic<std::size_t> peak{0};
std::size_t allocatedAtReset = 0;

} // namespace

namespace Scale::HeapMeter {

void Reset()
{
    allocatedAtReset = allocated;
    peak = allocatedAtReset;
}

std::size_t GetPeak()
{
    return peak - allocatedAtReset;
}

} // namespace Scale::HeapMeter

void* operator new(std::size_t size)
{
    void* const memory = std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    const std::size_t now = allocated += ::malloc_usable_size(memory);
    std::size_t highest = peak;
    while (now > highest && !peak.compare_exchange_weak(highest, now)) {
    }
    return memory;
}

void operator delete(void* memory) noexcept
{
    allocated -= ::malloc_usable_size(memory);
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}
