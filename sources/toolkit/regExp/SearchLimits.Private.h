#pragma once

#include <cstddef>

namespace Toolkit {

// The limits of one search, the same for both engines.

/// Steps from one start position; the next position starts at 0 again. They take some hundred
/// milliseconds.
constexpr unsigned int c_searchSteps = 10'000'000;

/// Bytes for backtracking: on the stack in PCRE 1, where often less is left, and on the heap in
/// PCRE 2.
constexpr std::size_t c_searchMemory = std::size_t{64} * 1024 * 1024;

} // namespace Toolkit
