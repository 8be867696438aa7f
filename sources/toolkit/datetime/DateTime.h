#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

#include <memory>

class wxDateTime;

namespace Toolkit {

/// A moment in time, read and written in the local time zone.
///
/// A date built from fields that are out of range is invalid: its getters return 0, and arithmetic
/// does not change it. The years -292275054 to 292278993 are supported. One object is used by one
/// thread at a time. Nothing is thrown or logged. When out of memory, a returned or written string
/// is empty, and a new date is invalid.
class TOOLKIT_API DateTime {
public:
    /// Stores the current time, in whole seconds.
    DateTime();
    /// The fields are in local time. Months and days count from 1. The year is read as signed. Day,
    /// hour, minute and second are truncated to 16 bits before they are checked.
    DateTime(unsigned int year, unsigned int month, unsigned int day, unsigned int hour,
             unsigned int minute, unsigned int second);
    /// Like the previous constructor, but the fields are on a clock that is `zoneHours` ahead of
    /// UTC. `zoneHours` should be from -12 to 13; it is not checked.
    DateTime(unsigned int year, unsigned int month, unsigned int day, unsigned int hour,
             unsigned int minute, unsigned int second, int zoneHours);
    DateTime(const DateTime& other);
    DateTime& operator=(const DateTime& other);
    ~DateTime();

    /// Replaces the value with the current time, in whole seconds.
    void Now();

    /// Return the fields in local time. Cast the result of GetYear() to int: years may be negative.
    unsigned int GetYear() const;
    unsigned int GetMonth() const;
    unsigned int GetDay() const;
    unsigned int GetHour() const;
    unsigned int GetMinute() const;
    unsigned int GetSecond() const;
    bool IsValid() const;

    /// MakeToUTC() shifts the moment so that its local time reads what UTC read before;
    /// MakeFromUTC() reverses that. A local time that the clock skips is moved by as much as the
    /// clock changes, in nearly all zones forward. If the result is out of range, the date becomes
    /// invalid.
    DateTime& MakeToUTC();
    DateTime& MakeFromUTC();

    /// Writes the local date, or the date in UTC: "2009-03-07". Years are padded to two characters
    /// only: the year 7 gives "07". An invalid date gives "00-00-00", and "00:00:00" as its time.
    void GetIsoDate(TString<wchar_t>& out, bool utc) const;
    /// Writes the local time as "07:04:09", or the time in UTC as "07:04:09 Z".
    void GetIsoTime(TString<wchar_t>& out, bool utc) const;
    /// Writes the date, a space and the time.
    void GetIsoString(TString<wchar_t>& out, bool utc) const;
    void GetIsoString(TString<char>& out, bool utc) const;

    /// Parses year, month, day, hour, minute and second, separated by any one character each. The
    /// character after the seconds is skipped: the time is UTC if a Z follows it, otherwise local.
    /// So "07:04:09 Z" is UTC and "07:04:09Z" is local. The numbers are truncated and checked like
    /// the arguments of the constructors. If the result is not a valid date, or when out of memory,
    /// returns false and makes this date invalid.
    bool ParseIsoString(const TString<wchar_t>& text);
    bool ParseIsoString(const TString<char>& text);

    /// GetDate() writes the date and GetTime() the time, in the user's short pattern
    /// (`Locales::GetCurrentDateFormat`), with day, month, hour and minute padded to two digits.
    /// Times have no seconds. In twelve-hour patterns ("h"), noon is 12 AM and midnight is 00 AM;
    /// with "hh", hours are 00 to 23, without AM or PM. Without a pattern, `out` is empty.
    void GetDate(TString<wchar_t>& out) const;
    void GetTime(TString<wchar_t>& out) const;
    /// Writes the date, a space and the time.
    void GetString(TString<wchar_t>& out) const;
    /// Writes only the time if the date is today, otherwise only the date.
    void GetRelativeStringFromNow(TString<wchar_t>& out) const;

    /// Returns `value` in decimal, padded with zeros on the left to `width` characters: -5 with a
    /// width of 4 gives "00-5".
    TString<wchar_t> IntToUString(int value, int width) const;

    /// Adds a duration. If the sum is out of range, the date becomes invalid.
    DateTime& Add(unsigned int hours, unsigned int minutes, unsigned int seconds);
    /// Adds or subtracts years and months, clamps the day to the last one of the month, and then
    /// adds or subtracts weeks and days. The local time of day stays; if the clock skips it, it is
    /// moved as MakeToUTC() describes. The numbers are read as signed, as in wxDateSpan:
    /// 4294967295 years are -1 year. If the result is out of range, the date becomes invalid.
    DateTime& Add(unsigned int years, unsigned int months, unsigned int weeks, unsigned int days);
    DateTime& Remove(unsigned int years, unsigned int months, unsigned int weeks,
                     unsigned int days);

    /// Return how much later this date is than `other`, in whole hours, minutes or seconds: rounded
    /// toward zero and truncated to 32 bits; 0 if either date is invalid or `other` is empty.
    int GetTotalHours(const smart_ptr<DateTime>& other) const;
    int GetTotalMinutes(const smart_ptr<DateTime>& other) const;
    long GetTotalSecondes(const smart_ptr<DateTime>& other) const;

    /// Compare the moments. Invalid dates are equal to each other and earlier than valid ones.
    bool operator==(const DateTime& other) const;
    bool operator!=(const DateTime& other) const;
    bool operator<(const DateTime& other) const;
    bool operator>(const DateTime& other) const;
    bool operator<=(const DateTime& other) const;
    bool operator>=(const DateTime& other) const;

private:
    const wxDateTime& Value() const;
    void Set(const wxDateTime& value);
    DateTime& AddSpan(long long months, long long days);
    long long MsLaterThan(const smart_ptr<DateTime>& other) const;

    std::unique_ptr<wxDateTime> m_value;
};

} // namespace Toolkit
