#pragma once

#include <cstddef>

/// What the program and the library have allocated with `operator new`.
namespace Scale::HeapMeter {

/// Starts to measure.
void Reset();

/// The peak since Reset(), without what was allocated before.
std::size_t Peak();

} // namespace Scale::HeapMeter
