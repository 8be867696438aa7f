#pragma once

#include <cstddef>

namespace Toolkit {

// The limits of one search, the same for both engines.

/// Steps from one start position; the count begins again at the next position. That many steps take
/// a few hundred milliseconds.
constexpr unsigned int c_searchSteps = 10'000'000;

/// Bytes for backtracking: in PCRE 1 on the stack, of which often less is left, and in PCRE 2 on
/// the heap.
constexpr std::size_t c_searchMemory = std::size_t{64} * 1024 * 1024;

} // namespace Toolkit
