#include "support/ScopedTimeZone.h"

#include <time.h>

namespace Toolkit::TestSupport {

ScopedTimeZone::ScopedTimeZone(const std::string& name)
{
    m_environment.emplace("TZ", name);
    ::tzset();
}

ScopedTimeZone::~ScopedTimeZone()
{
    m_environment.reset();
    ::tzset();
}

} // namespace Toolkit::TestSupport
