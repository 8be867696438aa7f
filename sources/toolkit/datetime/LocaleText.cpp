#include "toolkit/base/Numbers.h"
#include "toolkit/datetime/LocaleText.Private.h"

#include <cstddef>
#include <string>
#include <utility>

namespace Toolkit {
namespace {

constexpr long long c_noon = 12;

TString<wchar_t> PadToTwoDigits(long long value)
{
    return PadNumber(value, 2);
}

// Counts centuries as wxDateTime::GetCentury() does, where the year 0 is in the century -1.
long long GetYearOfCentury(long long year)
{
    const long long century = year > 0 ? year / 100 : year / 100 - 1;
    return year - 100 * century;
}

bool Contains(const TString<wchar_t>& text, const TString<wchar_t>& part)
{
    return text.find(part) != std::wstring::npos;
}

// Replaces each "a" of `pattern`. An "a" in `replacement` is not replaced again.
void ReplaceDayPeriodTokens(TString<wchar_t>& pattern, const TString<wchar_t>& replacement)
{
    TString<wchar_t> result;
    for (const wchar_t character : pattern) {
        if (character == L'a')
            result += replacement;
        else
            result.push_back(character);
    }
    pattern = std::move(result);
}

// Replaces the token "a" with `period`, which is AM or PM, unless `period` is empty. Without a
// token, appends a space and `period`, even an empty one.
void MarkDayPeriod(TString<wchar_t>& pattern, const TString<wchar_t>& period)
{
    if (!Contains(pattern, L"a"))
        pattern += L" " + period;
    else if (!period.empty())
        ReplaceDayPeriodTokens(pattern, period);
}

// Replaces the twelve-hour token and marks the half of the day. Noon is 12 AM and midnight 00 AM.
// Changes `hour` to the twelve-hour value.
void FormatTwelveHours(TString<wchar_t>& pattern, long long& hour, const DayPeriods& periods)
{
    const bool isAfternoon = hour > c_noon;
    if (isAfternoon)
        hour -= c_noon;
    pattern.Replace(L"h", PadToTwoDigits(hour));
    MarkDayPeriod(pattern, isAfternoon ? periods.afternoon : periods.morning);
}

} // namespace

TString<wchar_t> PadNumber(long long value, int width)
{
    std::wstring digits = Base::FormattedNumber<wchar_t>(value).String();
    if (width > 0 && digits.size() < static_cast<std::size_t>(width))
        digits.insert(0, static_cast<std::size_t>(width) - digits.size(), L'0');
    return digits;
}

TString<wchar_t> FormatDateByPattern(TString<wchar_t> pattern, const CalendarTime& time)
{
    // Longer tokens come first; "ddd" and "MMM" become the number twice.
    const std::pair<const wchar_t*, TString<wchar_t>> tokens[] = {
        {L"dd", PadToTwoDigits(time.day)},
        {L"%d", PadToTwoDigits(time.day)},
        {L"d", PadToTwoDigits(time.day)},
        {L"MM", PadToTwoDigits(time.month)},
        {L"%m", PadToTwoDigits(time.month)},
        {L"M", PadToTwoDigits(time.month)},
        {L"yyyy", PadNumber(time.year, 4)},
        {L"%Y", PadNumber(time.year, 4)},
        {L"yy", PadToTwoDigits(GetYearOfCentury(time.year))},
    };
    for (const auto& [token, replacement] : tokens)
        pattern.Replace(token, replacement);
    return pattern.substr(0, pattern.find(L' '));
}

TString<wchar_t> FormatTimeByPattern(TString<wchar_t> pattern, const CalendarTime& time,
                                     DayPeriods (*getDayPeriods)())
{
    long long hour = time.hour;
    pattern.Replace(L"HH", PadToTwoDigits(hour));
    // "hh" also becomes the 24-hour value, so no AM or PM is written.
    pattern.Replace(L"hh", PadToTwoDigits(hour));
    pattern.Replace(L"mm", PadToTwoDigits(time.minute));
    pattern.Replace(L"m", PadToTwoDigits(time.minute));
    pattern.Replace(L":ss", TString<wchar_t>::Empty());
    pattern.Replace(L" tt", TString<wchar_t>::Empty());
    if (Contains(pattern, L"h"))
        FormatTwelveHours(pattern, hour, getDayPeriods());
    else
        pattern.Replace(L"a", TString<wchar_t>::Empty());
    const TString<wchar_t> clock = PadToTwoDigits(hour) + L":" + PadToTwoDigits(time.minute);
    pattern.Replace(L"%T", clock);
    pattern.Replace(L"%R", clock);
    const std::size_t space = pattern.find(L' ');
    return space == std::wstring::npos ? pattern : TString<wchar_t>(pattern.substr(space + 1));
}

} // namespace Toolkit
