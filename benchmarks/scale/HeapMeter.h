#pragma once

#include <cstddef>

/// Measures the memory that the program and the library allocate with `operator new`.
namespace Scale::HeapMeter {

/// Starts a measurement.
void Reset();

/// Returns the peak since Reset() in bytes, without the memory allocated before it.
std::size_t GetPeak();

} // namespace Scale::HeapMeter
