#pragma once

#include "toolkit/core/TString.h"
#include "toolkit/datetime/CalendarTime.Private.h"

/// Dates and times as text for storage and exchange.
namespace Toolkit::IsoText {

/// Appends "2009-03-07"; the year has two digits at least.
void AppendDate(std::wstring& out, const CalendarTime& time);

/// Appends "07:04:09".
void AppendTime(std::wstring& out, const CalendarTime& time);

struct Parsed {
    CalendarTime time; // -1 for what could not be read
    bool isUtc;
};

/// Reads six numbers, as a standard stream does, each with one character of any kind behind it, and
/// then a zone character: Z is UTC.
Parsed Parse(const std::wstring& text);

} // namespace Toolkit::IsoText
