#pragma once

#include <string>

/// The regular expression engine that the library is built with.
namespace Toolkit::TestSupport {

#ifdef TOOLKIT_USES_PCRE2
constexpr bool c_usesPcre2 = true;
#else
constexpr bool c_usesPcre2 = false;
#endif

/// Returns the compile message of the engine in use: `first` is PCRE 1's, `second` PCRE 2's.
inline std::string ForEngine(const std::string& first, const std::string& second)
{
    return c_usesPcre2 ? second : first;
}

} // namespace Toolkit::TestSupport
