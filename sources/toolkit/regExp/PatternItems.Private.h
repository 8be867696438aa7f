#pragma once

#include <cstddef>

namespace Toolkit {

// The lengths of what a null-terminated pattern is made of.

/// The length of the escape at `text`; 0 for one after which characters lose their meaning:
/// quotations (\Q \E) and control characters (\c).
std::size_t MeasureEscape(const char* text);

/// The length of the set of characters at `text`, such as "\w", "\p{L}" or "[:alpha:]"; 0 for
/// anything else.
std::size_t MeasureSet(const char* text);

/// The length of the character class at `text`; 0 when its end is not certain.
std::size_t MeasureClass(const char* text);

} // namespace Toolkit
