#pragma once

#include <string>

namespace Toolkit::TestSupport {

/// Sets the C locale of the process. The destructor restores it.
class ScopedLocale {
public:
    /// Fails the test if the system has no locale `name`.
    explicit ScopedLocale(const std::string& name);
    ~ScopedLocale();

    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;

private:
    std::string m_oldName;
};

} // namespace Toolkit::TestSupport
