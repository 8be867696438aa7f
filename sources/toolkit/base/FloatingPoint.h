#pragma once

namespace Toolkit::Base {

/// Parses all characters from `begin` to `end` as an unsigned decimal number such as "12", "1.5" or
/// "2e-3". Returns false, with `value` unchanged, if they are not one complete number. Pass digits,
/// a dot and an exponent only: whether signs, "inf" and "nan" are rejected depends on the
/// implementation. May throw `std::bad_alloc`.
///
/// A number that is too large yields the largest finite value. One too close to 0 yields the
/// nearest value, which may be 0.
bool ParseFloatingPoint(const char* begin, const char* end, double& value);

/// Like ParseFloatingPoint(), but with strtod_l(), which also exists where std::from_chars() has no
/// floating-point overloads.
bool ParseFloatingPointByStrtod(const char* begin, const char* end, double& value);

} // namespace Toolkit::Base
