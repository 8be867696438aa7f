#pragma once

#include "toolkit/core/TString.h"
#include "toolkit/datetime/CalendarTime.Private.h"

/// Dates and times as strings for storage and exchange.
namespace Toolkit::IsoText {

/// Appends "2009-03-07"; the year has at least two digits.
void AppendDate(std::wstring& out, const CalendarTime& time);

/// Appends "07:04:09".
void AppendTime(std::wstring& out, const CalendarTime& time);

struct Parsed {
    CalendarTime time; // -1 for what could not be read
    bool isUtc;
};

/// Reads six numbers as a standard stream does, each followed by any one character, and then a
/// zone character: Z means UTC.
Parsed Parse(const std::wstring& text);

} // namespace Toolkit::IsoText
