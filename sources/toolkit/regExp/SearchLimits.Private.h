#pragma once

#include <cstddef>

namespace Toolkit {

// The limits of one search, the same for both engines.

/// Steps from one start position; the count begins again at the next one. This many steps take a
/// few hundred milliseconds.
constexpr unsigned int c_maxSearchSteps = 10'000'000;

/// Bytes for backtracking: on the heap with PCRE 2; on the stack with PCRE 1, where often less is
/// left.
constexpr std::size_t c_maxSearchMemory = std::size_t{64} * 1024 * 1024;

} // namespace Toolkit
