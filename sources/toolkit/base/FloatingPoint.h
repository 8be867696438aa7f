#pragma once

namespace Toolkit::Base {

/// Parses all characters from `begin` to `end` as an unsigned decimal number such as "12", "1.5" or
/// "2e-3". Returns false, with `value` unchanged, if they are not one complete number. Pass digits,
/// a dot and an exponent only: signs, "inf" and "nan" are not rejected.
///
/// A number that is too large yields the largest finite value. One that is too small yields the
/// nearest value, which may be 0.
bool ParseFloatingPoint(const char* begin, const char* end, double& value);

/// Like ParseFloatingPoint(), but with strtod_l(), which also exists where std::from_chars() lacks
/// floating-point numbers. Allocates.
bool ParseFloatingPointByStrtod(const char* begin, const char* end, double& value);

} // namespace Toolkit::Base
