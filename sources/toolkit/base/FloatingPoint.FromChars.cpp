#include "toolkit/base/FloatingPoint.h"

#include <charconv>
#include <system_error>

namespace Toolkit::Base {

// WideToDouble: for short numbers strtod_l() alone takes about four times as long.
bool ParseFloatingPoint(const char* begin, const char* end, double& value)
{
    double parsed = 0;
    const auto [stop, error] = std::from_chars(begin, end, parsed);
    if (stop != end || error == std::errc::invalid_argument)
        return false;
    // std::from_chars() stores nothing for a number out of range.
    if (error == std::errc::result_out_of_range)
        return ParseFloatingPointByStrtod(begin, end, value);
    value = parsed;
    return true;
}

} // namespace Toolkit::Base
