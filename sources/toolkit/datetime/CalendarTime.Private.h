#pragma once

namespace Toolkit {

// Converts between a date with a time of day and seconds since 1970.
//
// Uses the C library's time zone data throughout: wxDateTime's own conversions are wrong near every
// change of daylight saving. Years are limited by the milliseconds that wxDateTime can store, to
// about 292 million in either direction.

struct CalendarTime {
    long long year;
    long long month; // 1 to 12
    long long day;   // 1 to 31
    long long hour;
    long long minute;
    long long second;
};

/// Whether the fields are a date and time that can exist. Seconds may be 60 or 61, for leap
/// seconds.
bool IsInRange(const CalendarTime& time);

/// Converts a time in UTC to seconds since 1970, by the Gregorian calendar. Leap seconds count only
/// in the zones of TZ=right/...
long long ToSecondsFromUtc(const CalendarTime& time);

/// Converts a time on the local clock to seconds since 1970. For a time that the clock skips or
/// that occurs twice, mktime(3) chooses: it moves skipped times forward, but back in a zone whose
/// winter time is daylight saving time, such as Europe/Dublin.
long long ToSecondsFromLocal(const CalendarTime& time);

/// Convert seconds since 1970 to a date and a time of day, in UTC or on the local clock.
CalendarTime ToUtcTime(long long seconds);
CalendarTime ToLocalTime(long long seconds);

/// Moves a date by months, to the last day if the new month is too short, and then by days. The
/// time of day is unchanged. Returns false if either step leaves the supported years; `time` is
/// then unspecified.
bool MoveDate(CalendarTime& time, long long months, long long days);

} // namespace Toolkit
