#pragma once

#include <string>

/// The engine that the library is built with.
namespace Toolkit::TestSupport {

#ifdef TOOLKIT_USES_PCRE2
constexpr bool c_usesPcre2 = true;
#else
constexpr bool c_usesPcre2 = false;
#endif

/// Where the engines' compile messages differ: `first` is PCRE 1's.
inline std::string ForEngine(const std::string& first, const std::string& second)
{
    return c_usesPcre2 ? second : first;
}

} // namespace Toolkit::TestSupport
