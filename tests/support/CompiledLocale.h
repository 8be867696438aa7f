#pragma once

#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <string>

namespace Toolkit::TestSupport {

/// A locale that is compiled from the system's locale sources for one test and need not be
/// installed.
class CompiledLocale {
public:
    /// `source` and `charset` are arguments of localedef, such as "tr_TR" and "UTF-8".
    CompiledLocale(const std::string& source, const std::string& charset);

    /// False if the system has no locale sources or no localedef.
    bool IsAvailable() const { return m_isAvailable; }

    /// The name for `setlocale`, valid while this object exists.
    const std::string& Name() const { return m_name; }

private:
    TempDir m_directory;
    ScopedEnvironment m_searchPath;
    std::string m_name;
    bool m_isAvailable;
};

} // namespace Toolkit::TestSupport
