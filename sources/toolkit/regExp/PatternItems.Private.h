#pragma once

#include <cstddef>

namespace Toolkit {

// Measures the items that a null-terminated pattern consists of.

/// Returns the length of the escape at `text`; 0 at the end of the pattern, and for an escape that
/// changes the meaning of the characters after it: quotations (\Q \E) and control characters (\c).
/// Counts only the backslash and the next byte; the rest of "\x41" is measured like other text.
std::size_t MeasureEscape(const char* text);

/// Returns the length of the set of characters at `text`, such as "\w", "\p{L}" or "[:alpha:]"; 0
/// for anything else.
std::size_t MeasureSet(const char* text);

/// Returns the length of the character class at `text`; 0 when its end is uncertain.
std::size_t MeasureClass(const char* text);

} // namespace Toolkit
