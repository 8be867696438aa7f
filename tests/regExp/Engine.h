#pragma once

#include <string>

/// The regular expression engine that the library is built with.
namespace Toolkit::TestSupport {

#ifdef TOOLKIT_USES_PCRE2
constexpr bool c_usesPcre2 = true;
#else
constexpr bool c_usesPcre2 = false;
#endif

/// Returns the string for the engine in use.
inline std::string SelectForEngine(const std::string& pcre1, const std::string& pcre2)
{
    return c_usesPcre2 ? pcre2 : pcre1;
}

} // namespace Toolkit::TestSupport
