#pragma once

#include <cstddef>
#include <string>

// A plain reference implementation of replacement: every search starts at the beginning.
namespace Toolkit::References {

inline void ReplaceRepeatedly(std::wstring& text, const std::wstring& from, const std::wstring& to)
{
    for (std::size_t hit = text.find(from); hit != std::wstring::npos; hit = text.find(from))
        text.replace(hit, from.size(), to);
}

/// Whether repeated replacement is sure to end: each step shortens the string, or yields a
/// lexicographically greater one of the same length.
inline bool ReplacingTerminates(const std::wstring& from, const std::wstring& to)
{
    return !from.empty() && (to.size() < from.size() || (to.size() == from.size() && to > from));
}

} // namespace Toolkit::References
