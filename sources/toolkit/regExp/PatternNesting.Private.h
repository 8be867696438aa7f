#pragma once

#include <cstddef>

namespace Toolkit {

/// Returns how deeply the parentheses of a null-terminated pattern are nested. The result may be
/// too high, but never too low. The pattern need not compile.
std::size_t MeasureNesting(const char* pattern);

/// Whether the rest of this stack is enough to compile the groups of `pattern` if they follow one
/// another. The engine compares a group that may be absent with all that can come after it, and
/// each group in that comparison needs stack.
bool HasStackForGroups(const char* pattern);

} // namespace Toolkit
