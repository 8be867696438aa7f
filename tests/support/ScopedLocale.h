#pragma once

#include <string>

namespace Toolkit::TestSupport {

/// Sets the process's locale with setlocale(LC_ALL). The destructor restores the old one.
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
