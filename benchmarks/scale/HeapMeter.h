#pragma once

#include <cstddef>

/// Measures the memory that the program and its libraries allocate with `operator new`.
namespace Scale::HeapMeter {

/// Starts a measurement.
void Reset();

/// Returns the peak of the allocated memory since Reset(), in bytes above its level at Reset().
std::size_t GetPeak();

} // namespace Scale::HeapMeter
