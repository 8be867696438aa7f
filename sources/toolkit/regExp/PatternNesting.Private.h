#pragma once

#include <cstddef>

namespace Toolkit {

/// How deeply the parentheses of a null-terminated pattern are nested. The answer may be too high,
/// never too low. The pattern need not compile.
std::size_t MeasureNesting(const char* pattern);

/// Whether the engine can compile groups in sequence on the rest of this stack. It compares a group
/// that may be absent with all that can come after it, and each of these groups costs stack.
bool HasStackForGroups(const char* pattern);

} // namespace Toolkit
