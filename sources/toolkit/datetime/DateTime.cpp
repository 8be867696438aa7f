#include "toolkit/datetime/DateTime.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/datetime/CalendarTime.Private.h"
#include "toolkit/datetime/IsoText.Private.h"
#include "toolkit/datetime/LocaleText.Private.h"
#include "toolkit/framework/Text.h"
#include "toolkit/system/Locales.h"

#include <wx/datetime.h>

#include <cstdint>
#include <ctime>
#include <limits>

namespace Toolkit {
namespace {

constexpr long long c_msPerSecond = 1000;
constexpr long long c_msPerMinute = 60 * c_msPerSecond;
constexpr long long c_msPerHour = 60 * c_msPerMinute;

// The last moment that can be represented.
constexpr long long c_lastMs = std::numeric_limits<long long>::max();

constexpr CalendarTime c_noTime{0, 0, 0, 0, 0, 0};

// Returns milliseconds since 1970, negative before 1970, where wxDateTime::GetTicks() fails. For an
// invalid date returns the smallest number, which is what wxDateTime stores for it.
long long ToMs(const wxDateTime& value)
{
    return value.IsValid() ? value.GetValue().GetValue() : std::numeric_limits<long long>::min();
}

long long ToSeconds(const wxDateTime& value)
{
    const long long ms = ToMs(value);
    return ms / c_msPerSecond - (ms % c_msPerSecond < 0 ? 1 : 0);
}

// Returns the milliseconds since the last full second.
long long GetMsOfSecond(const wxDateTime& value)
{
    return ToMs(value) - ToSeconds(value) * c_msPerSecond;
}

wxDateTime FromMs(long long ms)
{
    return wxDateTime(wxLongLong(ms));
}

// Returns an invalid date for a time that cannot be represented.
wxDateTime FromSeconds(long long seconds, long long ms = 0)
{
    long long total = 0;
    const bool overflows = __builtin_mul_overflow(seconds, c_msPerSecond, &total) ||
                           __builtin_add_overflow(total, ms, &total);
    return overflows ? wxDateTime() : FromMs(total);
}

// Returns zeros for an invalid date.
CalendarTime GetFields(const wxDateTime& value, bool utc)
{
    if (!value.IsValid())
        return c_noTime;
    return utc ? ToUtcTime(ToSeconds(value)) : ToLocalTime(ToSeconds(value));
}

// Truncates the day and the time of day to 16 bits, as the constructors of wxDateTime do.
CalendarTime TruncateTo16Bits(const CalendarTime& time)
{
    const auto truncate = [](long long value) {
        return static_cast<long long>(static_cast<std::uint16_t>(value));
    };
    return {time.year,
            time.month,
            truncate(time.day),
            truncate(time.hour),
            truncate(time.minute),
            truncate(time.second)};
}

wxDateTime FromLocal(const CalendarTime& time)
{
    const CalendarTime fields = TruncateTo16Bits(time);
    return IsInRange(fields) ? FromSeconds(ToSecondsFromLocal(fields)) : wxDateTime();
}

wxDateTime FromUtc(const CalendarTime& time, long long offsetMs)
{
    const CalendarTime fields = TruncateTo16Bits(time);
    return IsInRange(fields) ? FromSeconds(ToSecondsFromUtc(fields), -offsetMs) : wxDateTime();
}

CalendarTime MakeFields(unsigned int year, unsigned int month, unsigned int day, unsigned int hour,
                        unsigned int minute, unsigned int second)
{
    return {static_cast<int>(year), month, day, hour, minute, second};
}

DayPeriods GetDayPeriodsOfLocale()
{
    wxString morning;
    wxString afternoon;
    wxDateTime::GetAmPmStrings(&morning, &afternoon);
    return {Framework::ToText(morning), Framework::ToText(afternoon)};
}

// Returns false if the user's pattern is unavailable.
bool AppendDate(TString<wchar_t>& out, const CalendarTime& time)
{
    TString<wchar_t> pattern;
    if (!Locales::GetCurrentDateFormat(pattern))
        return false;
    out += FormatDateByPattern(pattern, time);
    return true;
}

// Returns false if the user's pattern is unavailable.
bool AppendTime(TString<wchar_t>& out, const CalendarTime& time)
{
    TString<wchar_t> pattern;
    if (!Locales::GetCurrentDateFormat(pattern))
        return false;
    out += FormatTimeByPattern(pattern, time, GetDayPeriodsOfLocale);
    return true;
}

// Returns null when out of memory, which counts as an invalid date.
std::unique_ptr<wxDateTime> MakeValue(const wxDateTime& value)
{
    return Base::TryOr(nullptr, [&value] { return std::make_unique<wxDateTime>(value); });
}

// Converts as wxDateSpan does, whose numbers are signed: 4294967295 years are -1 year.
long long ToSigned(unsigned int count)
{
    return static_cast<int>(count);
}

// Clears `out` and calls `append`. If `append` returns false or runs out of memory, `out` is empty.
template <typename Char, typename Append>
void WriteText(TString<Char>& out, Append append)
{
    out.clear();
    if (!Base::TryOr(false, append))
        out.clear();
}

} // namespace

DateTime::DateTime() : m_value(MakeValue(FromSeconds(std::time(nullptr)))) {}

DateTime::DateTime(unsigned int year, unsigned int month, unsigned int day, unsigned int hour,
                   unsigned int minute, unsigned int second)
    : m_value(MakeValue(FromLocal(MakeFields(year, month, day, hour, minute, second))))
{
}

DateTime::DateTime(unsigned int year, unsigned int month, unsigned int day, unsigned int hour,
                   unsigned int minute, unsigned int second, int zoneHours)
    : m_value(MakeValue(
          FromUtc(MakeFields(year, month, day, hour, minute, second), zoneHours * c_msPerHour)))
{
}

DateTime::DateTime(const DateTime& other) : m_value(MakeValue(other.Value())) {}

DateTime& DateTime::operator=(const DateTime& other)
{
    Set(other.Value());
    return *this;
}

DateTime::~DateTime() = default;

// Returns an invalid date if MakeValue() ran out of memory.
const wxDateTime& DateTime::Value() const
{
    return m_value ? *m_value : wxDefaultDateTime;
}

void DateTime::Set(const wxDateTime& value)
{
    if (m_value)
        *m_value = value;
    else
        m_value = MakeValue(value);
}

void DateTime::Now()
{
    Set(FromSeconds(std::time(nullptr)));
}

unsigned int DateTime::GetYear() const
{
    return static_cast<unsigned int>(GetFields(Value(), false).year);
}

unsigned int DateTime::GetMonth() const
{
    return static_cast<unsigned int>(GetFields(Value(), false).month);
}

unsigned int DateTime::GetDay() const
{
    return static_cast<unsigned int>(GetFields(Value(), false).day);
}

unsigned int DateTime::GetHour() const
{
    return static_cast<unsigned int>(GetFields(Value(), false).hour);
}

unsigned int DateTime::GetMinute() const
{
    return static_cast<unsigned int>(GetFields(Value(), false).minute);
}

unsigned int DateTime::GetSecond() const
{
    return static_cast<unsigned int>(GetFields(Value(), false).second);
}

bool DateTime::IsValid() const
{
    return Value().IsValid();
}

DateTime& DateTime::MakeToUTC()
{
    if (IsValid())
        Set(FromSeconds(ToSecondsFromLocal(GetFields(Value(), true)), GetMsOfSecond(Value())));
    return *this;
}

DateTime& DateTime::MakeFromUTC()
{
    if (IsValid())
        Set(FromSeconds(ToSecondsFromUtc(GetFields(Value(), false)), GetMsOfSecond(Value())));
    return *this;
}

void DateTime::GetIsoDate(TString<wchar_t>& out, bool utc) const
{
    WriteText(out, [&] {
        AppendIsoDate(out, GetFields(Value(), utc));
        return true;
    });
}

void DateTime::GetIsoTime(TString<wchar_t>& out, bool utc) const
{
    WriteText(out, [&] {
        AppendIsoTime(out, GetFields(Value(), utc));
        if (utc)
            out += L" Z";
        return true;
    });
}

void DateTime::GetIsoString(TString<wchar_t>& out, bool utc) const
{
    WriteText(out, [&] {
        const CalendarTime fields = GetFields(Value(), utc);
        AppendIsoDate(out, fields);
        out.push_back(L' ');
        AppendIsoTime(out, fields);
        if (utc)
            out += L" Z";
        return true;
    });
}

void DateTime::GetIsoString(TString<char>& out, bool utc) const
{
    WriteText(out, [&] {
        TString<wchar_t> text;
        GetIsoString(text, utc);
        out = Base::EncodeUtf8(text);
        return true;
    });
}

bool DateTime::ParseIsoString(const TString<wchar_t>& text)
{
    const ParsedIsoText parsed = ParseIsoText(text);
    Set(parsed.isUtc ? FromUtc(parsed.time, 0) : FromLocal(parsed.time));
    return IsValid();
}

bool DateTime::ParseIsoString(const TString<char>& text)
{
    if (Base::TryOr(false, [&] { return ParseIsoString(Base::DecodeUtf8(text)); }))
        return true;
    Set(wxDateTime());
    return false;
}

void DateTime::GetDate(TString<wchar_t>& out) const
{
    WriteText(out, [&] { return AppendDate(out, GetFields(Value(), false)); });
}

void DateTime::GetTime(TString<wchar_t>& out) const
{
    WriteText(out, [&] { return AppendTime(out, GetFields(Value(), false)); });
}

void DateTime::GetString(TString<wchar_t>& out) const
{
    WriteText(out, [&] {
        const CalendarTime fields = GetFields(Value(), false);
        if (!AppendDate(out, fields))
            return false;
        out.push_back(L' ');
        return AppendTime(out, fields);
    });
}

void DateTime::GetRelativeStringFromNow(TString<wchar_t>& out) const
{
    const CalendarTime now = GetFields(FromSeconds(std::time(nullptr)), false);
    const CalendarTime then = GetFields(Value(), false);
    const bool isToday = now.year == then.year && now.month == then.month && now.day == then.day;
    if (isToday)
        GetTime(out);
    else
        GetDate(out);
}

TString<wchar_t> DateTime::IntToUString(int value, int width) const
{
    return Base::TryOr({}, [=] { return PadNumber(value, width); });
}

DateTime& DateTime::Add(unsigned int hours, unsigned int minutes, unsigned int seconds)
{
    const long long span = hours * c_msPerHour + minutes * c_msPerMinute + seconds * c_msPerSecond;
    if (IsValid())
        Set(ToMs(Value()) <= c_lastMs - span ? FromMs(ToMs(Value()) + span) : wxDateTime());
    return *this;
}

DateTime& DateTime::Add(unsigned int years, unsigned int months, unsigned int weeks,
                        unsigned int days)
{
    return AddSpan(ToSigned(years) * 12 + ToSigned(months), ToSigned(weeks) * 7 + ToSigned(days));
}

DateTime& DateTime::Remove(unsigned int years, unsigned int months, unsigned int weeks,
                           unsigned int days)
{
    return AddSpan(-(ToSigned(years) * 12 + ToSigned(months)),
                   -(ToSigned(weeks) * 7 + ToSigned(days)));
}

// If the result is outside the supported years, the date becomes invalid.
DateTime& DateTime::AddSpan(long long months, long long days)
{
    if (!IsValid())
        return *this;
    const long long ms = GetMsOfSecond(Value());
    CalendarTime fields = GetFields(Value(), false);
    Set(MoveDate(fields, months, days) ? FromSeconds(ToSecondsFromLocal(fields), ms)
                                       : wxDateTime());
    return *this;
}

long long DateTime::MsLaterThan(const smart_ptr<DateTime>& other) const
{
    if (!other.IsValid() || !other->IsValid() || !IsValid())
        return 0;
    // Wraps around for dates that are too far apart.
    return static_cast<long long>(static_cast<unsigned long long>(ToMs(Value())) -
                                  static_cast<unsigned long long>(ToMs(other->Value())));
}

int DateTime::GetTotalHours(const smart_ptr<DateTime>& other) const
{
    return static_cast<int>(MsLaterThan(other) / c_msPerHour);
}

int DateTime::GetTotalMinutes(const smart_ptr<DateTime>& other) const
{
    return static_cast<int>(MsLaterThan(other) / c_msPerMinute);
}

long DateTime::GetTotalSecondes(const smart_ptr<DateTime>& other) const
{
    return static_cast<std::int32_t>(MsLaterThan(other) / c_msPerSecond);
}

bool DateTime::operator==(const DateTime& other) const
{
    return ToMs(Value()) == ToMs(other.Value());
}

bool DateTime::operator!=(const DateTime& other) const
{
    return !(*this == other);
}

bool DateTime::operator<(const DateTime& other) const
{
    return ToMs(Value()) < ToMs(other.Value());
}

bool DateTime::operator>(const DateTime& other) const
{
    return other < *this;
}

bool DateTime::operator<=(const DateTime& other) const
{
    return !(*this > other);
}

bool DateTime::operator>=(const DateTime& other) const
{
    return !(*this < other);
}

} // namespace Toolkit
