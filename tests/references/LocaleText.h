#pragma once

#include "references/Replace.h"

#include <cstddef>
#include <string>
#include <utility>

// A plain reference implementation of formatting by locale patterns: every search for a token
// starts at the beginning.
namespace Toolkit::References {

/// Formats 5 March 2009, up to the first space.
inline std::wstring FormatDate(std::wstring pattern)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> tokens[] = {
        {L"dd", L"05"}, {L"%d", L"05"},     {L"d", L"05"},    {L"MM", L"03"}, {L"%m", L"03"},
        {L"M", L"03"},  {L"yyyy", L"2009"}, {L"%Y", L"2009"}, {L"yy", L"09"}};
    for (const auto& [token, number] : tokens)
        ReplaceRepeatedly(pattern, token, number);
    return pattern.substr(0, pattern.find(L' '));
}

/// Formats 19:04 for a locale that calls the halves of the day AM and PM. Formats what follows the
/// first space, or the whole pattern if it has none.
inline std::wstring FormatTime(std::wstring pattern)
{
    ReplaceRepeatedly(pattern, L"HH", L"19");
    ReplaceRepeatedly(pattern, L"hh", L"19");
    ReplaceRepeatedly(pattern, L"mm", L"04");
    ReplaceRepeatedly(pattern, L"m", L"04");
    ReplaceRepeatedly(pattern, L":ss", L"");
    ReplaceRepeatedly(pattern, L" tt", L"");
    const bool isTwelveHourClock = pattern.find(L'h') != std::wstring::npos;
    ReplaceRepeatedly(pattern, L"h", L"07");
    if (isTwelveHourClock && pattern.find(L'a') == std::wstring::npos)
        pattern += L" PM";
    ReplaceRepeatedly(pattern, L"a", isTwelveHourClock ? L"PM" : L"");
    const std::wstring clock = isTwelveHourClock ? L"07:04" : L"19:04";
    ReplaceRepeatedly(pattern, L"%T", clock);
    ReplaceRepeatedly(pattern, L"%R", clock);
    const std::size_t space = pattern.find(L' ');
    return space == std::wstring::npos ? pattern : pattern.substr(space + 1);
}

} // namespace Toolkit::References
