#pragma once

#include "support/ScopedEnvironment.h"

#include <optional>
#include <string>

namespace Toolkit::TestSupport {

/// Sets the time zone of the process, such as "Europe/Berlin". The destructor restores it.
class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const std::string& name);
    ~ScopedTimeZone();

    ScopedTimeZone(const ScopedTimeZone&) = delete;
    ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

private:
    std::optional<ScopedEnvironment> m_environment; // reset early: tzset() must see the old value
};

} // namespace Toolkit::TestSupport
