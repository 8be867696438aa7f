#pragma once

#include <cstddef>

namespace Toolkit {

// Measures the items that a null-terminated pattern consists of.

/// Returns the length of the escape at `text`; 0 for a backslash that ends the pattern, and for \Q,
/// \E and \c, after which special characters may be ordinary ones. Counts only the backslash and
/// the next byte; the rest of "\x41" is measured like other text.
std::size_t MeasureEscape(const char* text);

/// Returns the length of the character type or POSIX class at `text`, such as "\w", "\p{L}" or
/// "[:alpha:]"; 0 for anything else.
std::size_t MeasureSet(const char* text);

/// Returns the length of the character class at `text`, such as "[^a-z]"; 0 when its end is
/// uncertain.
std::size_t MeasureClass(const char* text);

} // namespace Toolkit
