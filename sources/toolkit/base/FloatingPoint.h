#pragma once

namespace Toolkit::Base {

/// Parses a whole text as an unsigned decimal number such as "12", "1.5" or "2e-3". False, with
/// `value` unchanged, when it is something else.
///
/// A number that is too large gives the largest value of the type, one that is too small the
/// nearest value, which may be 0.
bool ParseFloatingPoint(const char* begin, const char* end, double& value);

/// The same with strtod(), which every C library has. Allocates.
bool ParseFloatingPointByStrtod(const char* begin, const char* end, double& value);

} // namespace Toolkit::Base
