#include "support/ScopedEnvironment.h"

#include <cstdlib>

namespace Toolkit::TestSupport {

ScopedEnvironment::ScopedEnvironment(const std::string& name,
                                     const std::optional<std::string>& value)
    : m_name(name)
{
    if (const char* const oldValue = std::getenv(name.c_str()))
        m_oldValue = oldValue;
    Set(value);
}

ScopedEnvironment::~ScopedEnvironment()
{
    Set(m_oldValue);
}

void ScopedEnvironment::Set(const std::optional<std::string>& value) const
{
    if (value)
        ::setenv(m_name.c_str(), value->c_str(), 1);
    else
        ::unsetenv(m_name.c_str());
}

} // namespace Toolkit::TestSupport
