#pragma once

#include <cctype>
#include <cwctype>

namespace Toolkit {

/// The C library's `tolower` for a character of either width, in the current locale.
///
/// Narrow characters are passed as signed values: the C library's table begins at -128.
inline char FoldNarrow(char character)
{
    return static_cast<char>(std::tolower(static_cast<signed char>(character)));
}

/// Returns characters outside the range of `tolower` unchanged; `tolower` is undefined for them.
inline wchar_t FoldNarrow(wchar_t character)
{
    if (character < 0 || character > 0xFF)
        return character;
    return static_cast<wchar_t>(std::tolower(character));
}

/// Returns the value that `compareNoCase` compares.
inline int FoldForComparison(char character)
{
    return std::tolower(static_cast<signed char>(character));
}

inline int FoldForComparison(wchar_t character)
{
    return static_cast<int>(std::towlower(static_cast<std::wint_t>(character)));
}

} // namespace Toolkit
