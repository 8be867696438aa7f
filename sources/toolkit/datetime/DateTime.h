#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

#include <memory>

class wxDateTime;

namespace Toolkit {

/// A moment, read and written in the local time zone.
///
/// A date made of fields that are out of range is invalid: its fields read 0 and operations leave
/// it as it is. One object is used by one thread at a time. Nothing is thrown or logged. When out
/// of memory a text is empty, and a date that is made is invalid.
class TOOLKIT_API DateTime {
public:
    /// The current moment.
    DateTime();
    /// Local time. Months and days count from 1; day, hour, minute and second are cut to 16 bits
    /// before they are looked at.
    DateTime(unsigned int year, unsigned int month, unsigned int day, unsigned int hour,
             unsigned int minute, unsigned int second);
    /// The time of a clock that is `zoneHours` hours, -12 to 13, ahead of Greenwich.
    DateTime(unsigned int year, unsigned int month, unsigned int day, unsigned int hour,
             unsigned int minute, unsigned int second, int zoneHours);
    DateTime(const DateTime& other);
    DateTime& operator=(const DateTime& other);
    ~DateTime();

    /// Takes the current moment, in whole seconds.
    void Now();

    unsigned int GetYear() const;
    unsigned int GetMonth() const;
    unsigned int GetDay() const;
    unsigned int GetHour() const;
    unsigned int GetMinute() const;
    unsigned int GetSecond() const;
    bool IsValid() const;

    /// Moves the moment such that its local time is what UTC was, or back. Clocks that are put
    /// forward skip an hour: a time in it cannot be shown and moves on by that hour.
    DateTime& MakeToUTC();
    DateTime& MakeFromUTC();

    /// "2009-03-07", of the local date or of that in UTC.
    void GetIsoDate(TString<wchar_t>& out, bool utc) const;
    /// "07:04:09", and "07:04:09 Z" for UTC.
    void GetIsoTime(TString<wchar_t>& out, bool utc) const;
    /// Date, blank and time.
    void GetIsoString(TString<wchar_t>& out, bool utc) const;
    void GetIsoString(TString<char>& out, bool utc) const;

    /// Reads year, month, day, hour, minute and second, separated by any one character each, as
    /// local time, or as UTC when a blank (or any other character) and a Z follow. A Z directly
    /// behind the seconds is taken for a separator: the text is local time. False when that is no
    /// date; the value is invalid then.
    bool ParseIsoString(const TString<wchar_t>& text);
    bool ParseIsoString(const TString<char>& text);

    /// The date, or the time, in the user's short pattern (`Locales::GetCurrentDateFormat`), with
    /// numbers of two digits. Times come without seconds. In patterns of twelve hours noon and
    /// midnight are 12 and 00 in the morning.
    void GetDate(TString<wchar_t>& out) const;
    void GetTime(TString<wchar_t>& out) const;
    /// Date, blank and time.
    void GetString(TString<wchar_t>& out) const;
    /// The time alone when the date is that of now, otherwise the date alone.
    void GetRelativeStringFromNow(TString<wchar_t>& out) const;

    /// The digits of `value`, with zeros in front up to `width` characters: -5 in 4 gives "00-5".
    TString<wchar_t> IntToUString(int value, int width) const;

    /// Moves the moment by a length of time.
    DateTime& Add(unsigned int hours, unsigned int minutes, unsigned int seconds);
    /// Moves the date by years and months, to the last day of a month that is too short, and then
    /// by weeks and days. The local time of day stays. The numbers are signed 32-bit numbers, as in
    /// wxDateSpan: 4294967295 years are one year back.
    DateTime& Add(unsigned int years, unsigned int months, unsigned int weeks, unsigned int days);
    DateTime& Remove(unsigned int years, unsigned int months, unsigned int weeks,
                     unsigned int days);

    /// How much later than `other` this is, in whole units; 0 without another valid date. Seconds
    /// are cut to 32 bits.
    int GetTotalHours(const smart_ptr<DateTime>& other) const;
    int GetTotalMinutes(const smart_ptr<DateTime>& other) const;
    long GetTotalSecondes(const smart_ptr<DateTime>& other) const;

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
