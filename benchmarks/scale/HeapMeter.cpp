#include "scale/HeapMeter.h"

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

std::atomic<std::size_t> s_allocated{0};
std::atomic<std::size_t> s_peak{0};
std::size_t s_allocatedAtReset = 0;

} // namespace

namespace Scale::HeapMeter {

void Reset()
{
    s_allocatedAtReset = s_allocated;
    s_peak = s_allocatedAtReset;
}

std::size_t GetPeak()
{
    return s_peak - s_allocatedAtReset;
}

} // namespace Scale::HeapMeter

// Counts usable block sizes. The array and nothrow forms of `new` call this one; over-aligned
// objects are not counted.
void* operator new(std::size_t size)
{
    void* const memory = std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    const std::size_t allocated = s_allocated += ::malloc_usable_size(memory);
    // Raises `s_peak`, unless another thread has raised it further.
    std::size_t peak = s_peak;
    while (allocated > peak && !s_peak.compare_exchange_weak(peak, allocated)) {
    }
    return memory;
}

void operator delete(void* memory) noexcept
{
    s_allocated -= ::malloc_usable_size(memory);
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}
