#pragma once

#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <string>

namespace Toolkit::TestSupport {

/// A locale that is compiled from the system's sources for one test, so that it need not be
/// installed.
class CompiledLocale {
public:
    /// `source` and `charset` as localedef takes them, such as "tr_TR" and "UTF-8".
    CompiledLocale(const std::string& source, const std::string& charset);

    /// False when the system has no sources or no compiler of locales.
    bool IsThere() const { return m_isThere; }

    /// What `setlocale` takes as long as this object lives.
    const std::string& Name() const { return m_name; }

private:
    TempDir m_directory;
    ScopedEnvironment m_searchPath;
    std::string m_name;
    bool m_isThere;
};

} // namespace Toolkit::TestSupport
