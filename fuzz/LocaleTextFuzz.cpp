// Patterns of any text are replaced token by token, each search starting anew at the
// beginning of the pattern.

#include "toolkit/datetime/LocaleText.Private.h"

#include "support/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using namespace Toolkit;

constexpr CalendarTime c_time{2009, 3, 5, 19, 4, 9};

LocaleText::DayHalves GetDayHalves()
{
    return {L"AM", L"PM"};
}

void ReplaceAll(std::wstring& text, const std::wstring& from, const std::wstring& to)
{
    for (std::size_t at = text.find(from); at != std::wstring::npos; at = text.find(from))
        text.replace(at, from.size(), to);
}

std::wstring DateByStep(std::wstring pattern)
{
    for (const wchar_t* const token : {L"dd", L"%d", L"d"})
        ReplaceAll(pattern, token, L"05");
    for (const wchar_t* const token : {L"MM", L"%m", L"M"})
        ReplaceAll(pattern, token, L"03");
    ReplaceAll(pattern, L"yyyy", L"2009");
    ReplaceAll(pattern, L"%Y", L"2009");
    ReplaceAll(pattern, L"yy", L"09");
    return pattern.substr(0, pattern.find(L' '));
}

std::wstring TimeByStep(std::wstring pattern)
{
    for (const wchar_t* const token : {L"HH", L"hh"})
        ReplaceAll(pattern, token, L"19");
    for (const wchar_t* const token : {L"mm", L"m"})
        ReplaceAll(pattern, token, L"04");
    for (const wchar_t* const token : {L":ss", L" tt"})
        ReplaceAll(pattern, token, L"");
    const bool hasTwelveHours = pattern.find(L'h') != std::wstring::npos;
    ReplaceAll(pattern, L"h", L"07");
    if (hasTwelveHours && pattern.find(L'a') == std::wstring::npos)
        pattern += L" PM";
    ReplaceAll(pattern, L"a", hasTwelveHours ? L"PM" : L"");
    for (const wchar_t* const token : {L"%T", L"%R"})
        ReplaceAll(pattern, token, hasTwelveHours ? L"07:04" : L"19:04");
    const std::size_t blank = pattern.find(L' ');
    return blank == std::wstring::npos ? pattern : pattern.substr(blank + 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The literal steps take a square of the length.
    constexpr std::size_t longest = 4096;

    const std::wstring pattern(data, data + std::min(size, longest));

    Require(LocaleText::FormatDate(pattern, c_time) == DateByStep(pattern));
    Require(LocaleText::FormatTime(pattern, c_time, GetDayHalves) == TimeByStep(pattern));
    return 0;
}
