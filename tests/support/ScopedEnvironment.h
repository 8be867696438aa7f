#pragma once

#include <optional>
#include <string>

namespace Toolkit::TestSupport {

/// Sets an environment variable, or removes it if `value` is `std::nullopt`. The destructor
/// restores it.
class ScopedEnvironment {
public:
    ScopedEnvironment(const std::string& name, const std::optional<std::string>& value);
    ~ScopedEnvironment();

    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    void Set(const std::optional<std::string>& value) const;

    std::string m_name;
    std::optional<std::string> m_oldValue;
};

} // namespace Toolkit::TestSupport
