#pragma once

namespace Toolkit::Base {

/// Parses the whole of an unsigned decimal number such as "12", "1.5" or "2e-3". False, and `value`
/// is unchanged, when it is something else.
///
/// A number too large gives the largest of the type, one too small the nearest that there is, which
/// may be 0.
bool ParseFloatingPoint(const char* begin, const char* end, double& value);

/// The same with strtod(), which every C library has. Allocates.
bool ParseFloatingPointByStrtod(const char* begin, const char* end, double& value);

} // namespace Toolkit::Base
