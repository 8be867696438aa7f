#pragma once

#include "toolkit/datetime/CalendarTime.Private.h"

#include <string>

namespace Toolkit {

// Dates and times as strings for storage and exchange.

/// Appends "2009-03-07"; the year is padded to two characters only.
void AppendIsoDate(std::wstring& out, const CalendarTime& time);

/// Appends "07:04:09".
void AppendIsoTime(std::wstring& out, const CalendarTime& time);

struct ParsedIsoText {
    CalendarTime time; // -1 for each field that could not be read
    bool isUtc;
};

/// Reads six numbers as a standard stream does, each followed by any one character, and then a
/// zone character: Z means UTC.
ParsedIsoText ParseIsoText(const std::wstring& text);

} // namespace Toolkit
