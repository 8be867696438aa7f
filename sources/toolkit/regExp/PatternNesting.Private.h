#pragma once

#include <cstddef>

namespace Toolkit {

/// Returns how deeply the parentheses of a null-terminated pattern are nested. The result may be
/// too high, but never too low. The pattern need not compile.
std::size_t MeasureNesting(const char* pattern);

/// Whether enough stack is left to compile the groups of `pattern`, even if they are not nested:
/// the engine compares an optional group with everything that can come after it, and recurses for
/// each group there.
bool HasStackForGroups(const char* pattern);

} // namespace Toolkit
