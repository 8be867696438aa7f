#pragma once

#include <cstddef>

namespace Toolkit {

/// How deeply the parentheses of a null-terminated pattern are nested. The answer may be too high,
/// never too low. The pattern need not compile.
std::size_t DeepestNesting(const char* pattern);

} // namespace Toolkit
