#pragma once

#include <cstddef>

/// What the program has allocated with `operator new`, in the library too.
namespace Scale::HeapMeter {

/// Starts to measure.
void Reset();

/// The most that was allocated at once since Reset(), beyond what was allocated then.
std::size_t Peak();

} // namespace Scale::HeapMeter
