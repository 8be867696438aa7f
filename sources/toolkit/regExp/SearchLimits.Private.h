#pragma once

#include <cstddef>

namespace Toolkit {

// What one search may use, with either engine.

/// The most steps from one start position. The count begins anew at the next position. Some hundred
/// milliseconds.
constexpr unsigned int c_searchSteps = 10'000'000;

/// The most memory for backtracking: on the stack in PCRE 1, which often has less left, and on the
/// heap in PCRE 2.
constexpr std::size_t c_searchMemory = std::size_t{64} * 1024 * 1024;

} // namespace Toolkit
