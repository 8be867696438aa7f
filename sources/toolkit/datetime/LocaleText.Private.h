#pragma once

#include "toolkit/core/TString.h"
#include "toolkit/datetime/CalendarTime.Private.h"

namespace Toolkit {

// Formats dates and times according to patterns. A pattern consists of a date, a space and a time.

/// A locale's strings for AM and PM. Empty if the locale has none.
struct DayPeriods {
    TString<wchar_t> morning;
    TString<wchar_t> afternoon;
};

/// Returns `pattern` up to its first space, with the date tokens replaced.
TString<wchar_t> FormatDateByPattern(TString<wchar_t> pattern, const CalendarTime& time);

/// Returns `pattern` after its first space, or all of it if there is no space, with the time tokens
/// replaced. Calls `getDayPeriods` for twelve-hour patterns only.
TString<wchar_t> FormatTimeByPattern(TString<wchar_t> pattern, const CalendarTime& time,
                                     DayPeriods (*getDayPeriods)());

/// Returns `value` in decimal, padded with zeros on the left to `width` characters.
TString<wchar_t> PadNumber(long long value, int width);

} // namespace Toolkit
