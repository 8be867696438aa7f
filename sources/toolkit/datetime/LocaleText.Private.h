#pragma once

#include "toolkit/core/TString.h"
#include "toolkit/datetime/CalendarTime.Private.h"

/// Dates and times in patterns that hold a date, a blank and a time.
namespace Toolkit::LocaleText {

/// The texts of a locale for the halves of the day; empty where it has none.
struct DayHalves {
    TString<wchar_t> morning;
    TString<wchar_t> afternoon;
};

/// `pattern` with its date tokens replaced, up to the first blank.
TString<wchar_t> FormatDate(TString<wchar_t> pattern, const CalendarTime& time);

/// `pattern` with its time tokens replaced, behind the first blank. `getDayHalves` is called for
/// patterns of twelve hours.
TString<wchar_t> FormatTime(TString<wchar_t> pattern, const CalendarTime& time,
                            DayHalves (*getDayHalves)());

/// The digits of `value` with zeros in front up to `width` characters.
TString<wchar_t> PaddedNumber(long long value, int width);

} // namespace Toolkit::LocaleText
