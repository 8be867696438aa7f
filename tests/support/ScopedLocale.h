#pragma once

#include <string>

namespace Toolkit::TestSupport {

/// Sets the C locale of the process and restores it.
class ScopedLocale {
public:
    /// The test fails when the system does not have the locale `name`.
    explicit ScopedLocale(const std::string& name);
    ~ScopedLocale();

    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;

private:
    std::string m_oldName;
};

} // namespace Toolkit::TestSupport
