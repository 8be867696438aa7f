#include "toolkit/base/FloatingPoint.h"

namespace Toolkit::Base {

bool ParseFloatingPoint(const char* begin, const char* end, double& value)
{
    return ParseFloatingPointByStrtod(begin, end, value);
}

} // namespace Toolkit::Base
