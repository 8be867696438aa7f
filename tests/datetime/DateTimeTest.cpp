#include "toolkit/datetime/DateTime.h"

#include "support/ScopedEnvironment.h"
#include "support/ScopedTimeZone.h"

#include <gtest/gtest.h>

#include <array>
#include <ctime>
#include <string>
#include <utility>

namespace Toolkit {
namespace {

using TestSupport::ScopedEnvironment;
using TestSupport::ScopedTimeZone;

// Sets the time zone to Central European Time and the locale to US English.
class DateTimeTest : public testing::Test {
protected:
    static std::wstring ToIso(const DateTime& date)
    {
        TString<wchar_t> text;
        date.GetIsoString(text, false);
        return text;
    }

    static std::wstring ToUtcIso(const DateTime& date)
    {
        TString<wchar_t> text;
        date.GetIsoString(text, true);
        return text;
    }

    static std::wstring ParseToIso(const TString<wchar_t>& text)
    {
        DateTime date;
        return date.ParseIsoString(text) ? ToIso(date) : std::wstring(L"invalid");
    }

    static std::wstring FormatDate(const DateTime& date)
    {
        TString<wchar_t> text;
        date.GetDate(text);
        return text;
    }

    static std::wstring FormatTime(const DateTime& date)
    {
        TString<wchar_t> text;
        date.GetTime(text);
        return text;
    }

    static smart_ptr<DateTime> CopyShared(const DateTime& date)
    {
        return smart_ptr<DateTime>(new DateTime(date));
    }

    const ScopedTimeZone m_zone{"Europe/Berlin"};
    const ScopedEnvironment m_locale{"LC_ALL", "en_US.UTF-8"};
    const DateTime m_march{2009, 3, 5, 7, 4, 9};
    const DateTime m_invalid{2009, 13, 1, 0, 0, 0};
};

TEST_F(DateTimeTest, StoresTheCurrentTimeByDefault)
{
    const std::time_t before = std::time(nullptr);
    const DateTime date;
    const std::time_t after = std::time(nullptr);

    const DateTime epoch(1970, 1, 1, 0, 0, 0, 0);
    EXPECT_GE(date.GetTotalSecondes(CopyShared(epoch)), before);
    EXPECT_LE(date.GetTotalSecondes(CopyShared(epoch)), after);
}

TEST_F(DateTimeTest, SetsTheCurrentTimeWithNow)
{
    DateTime date(1999, 1, 1, 0, 0, 0);

    date.Now();

    EXPECT_GT(date.GetYear(), 2000u);
}

TEST_F(DateTimeTest, KeepsTheFieldsPassedToTheConstructor)
{
    EXPECT_TRUE(m_march.IsValid());
    EXPECT_EQ(m_march.GetYear(), 2009u);
    EXPECT_EQ(m_march.GetMonth(), 3u);
    EXPECT_EQ(m_march.GetDay(), 5u);
    EXPECT_EQ(m_march.GetHour(), 7u);
    EXPECT_EQ(m_march.GetMinute(), 4u);
    EXPECT_EQ(m_march.GetSecond(), 9u);
}

TEST_F(DateTimeTest, IsInvalidWithAFieldOutOfRange)
{
    constexpr std::array<unsigned int, 6> cases[] = {
        {2009, 0, 1, 0, 0, 0},  {2009, 13, 1, 0, 0, 0}, {2009, 1, 0, 0, 0, 0},
        {2009, 1, 32, 0, 0, 0}, {2009, 2, 29, 0, 0, 0}, {2009, 4, 31, 0, 0, 0},
        {2009, 1, 1, 24, 0, 0}, {2009, 1, 1, 0, 60, 0}, {2009, 1, 1, 0, 0, 62}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c));
        EXPECT_FALSE(DateTime(c[0], c[1], c[2], c[3], c[4], c[5]).IsValid());
        EXPECT_FALSE(DateTime(c[0], c[1], c[2], c[3], c[4], c[5], 0).IsValid());
    }
}

TEST_F(DateTimeTest, MovesLeapSecondsToTheNextMinute)
{
    EXPECT_EQ(ToIso(DateTime(2009, 1, 1, 0, 0, 60)), L"2009-01-01 00:01:00");
    EXPECT_EQ(ToIso(DateTime(2009, 1, 1, 0, 0, 61)), L"2009-01-01 00:01:01");
}

TEST_F(DateTimeTest, AcceptsLeapDaysInLeapYearsOnly)
{
    EXPECT_TRUE(DateTime(2008, 2, 29, 0, 0, 0).IsValid());
    EXPECT_TRUE(DateTime(2000, 2, 29, 0, 0, 0).IsValid());
    EXPECT_FALSE(DateTime(1900, 2, 29, 0, 0, 0).IsValid());
}

TEST_F(DateTimeTest, TruncatesDayAndTimeTo16Bits)
{
    const DateTime date(2009, 3, 65536 + 5, 65536 + 7, 65536 + 4, 65536 + 9);

    EXPECT_EQ(ToIso(date), L"2009-03-05 07:04:09");
}

TEST_F(DateTimeTest, FormatsYearsFrom1To9999)
{
    EXPECT_EQ(ToIso(DateTime(1, 1, 1, 0, 0, 0)), L"01-01-01 00:00:00");
    EXPECT_EQ(ToIso(DateTime(1583, 10, 15, 1, 2, 3)), L"1583-10-15 01:02:03");
    EXPECT_EQ(ToIso(DateTime(9999, 12, 31, 23, 59, 59)), L"9999-12-31 23:59:59");
}

TEST_F(DateTimeTest, ReturnsZerosWhenInvalid)
{
    EXPECT_FALSE(m_invalid.IsValid());
    EXPECT_EQ(m_invalid.GetYear(), 0u);
    EXPECT_EQ(m_invalid.GetMonth(), 0u);
    EXPECT_EQ(m_invalid.GetDay(), 0u);
    EXPECT_EQ(m_invalid.GetHour(), 0u);
    EXPECT_EQ(m_invalid.GetMinute(), 0u);
    EXPECT_EQ(m_invalid.GetSecond(), 0u);
    EXPECT_EQ(ToIso(m_invalid), L"00-00-00 00:00:00");
}

TEST_F(DateTimeTest, StaysInvalidAndReturnsZeroDifferences)
{
    DateTime date(m_invalid);

    date.Add(1, 2, 3).Add(1, 2, 3, 4).Remove(1, 0, 0, 0).MakeToUTC().MakeFromUTC();

    EXPECT_FALSE(date.IsValid());
    EXPECT_EQ(date.GetTotalHours(CopyShared(m_march)), 0);
    EXPECT_EQ(m_march.GetTotalMinutes(CopyShared(date)), 0);
}

TEST_F(DateTimeTest, ReadsFieldsInTheGivenTimeZone)
{
    EXPECT_EQ(ToUtcIso(DateTime(2009, 3, 5, 7, 4, 9, 0)), L"2009-03-05 07:04:09 Z");
    EXPECT_EQ(ToUtcIso(DateTime(2009, 3, 5, 7, 4, 9, 2)), L"2009-03-05 05:04:09 Z");
    EXPECT_EQ(ToUtcIso(DateTime(2009, 3, 5, 7, 4, 9, -12)), L"2009-03-05 19:04:09 Z");
    EXPECT_EQ(ToUtcIso(DateTime(2009, 3, 5, 7, 4, 9, 13)), L"2009-03-04 18:04:09 Z");
}

TEST_F(DateTimeTest, ConvertsUtcFieldsToLocalTimeWithDaylightSaving)
{
    EXPECT_EQ(ToIso(DateTime(2009, 3, 5, 12, 0, 0, 0)), L"2009-03-05 13:00:00");
    EXPECT_EQ(ToIso(DateTime(2009, 7, 5, 12, 0, 0, 0)), L"2009-07-05 14:00:00");
}

TEST_F(DateTimeTest, ShiftsANonexistentLocalTimeForward)
{
    DateTime date(2009, 3, 28, 2, 30, 0);

    EXPECT_EQ(ToIso(date.Add(0, 0, 0, 1)), L"2009-03-29 03:30:00");
    EXPECT_EQ(ToIso(DateTime(2009, 3, 29, 2, 30, 0)), L"2009-03-29 03:30:00");
}

TEST_F(DateTimeTest, CreatesIndependentCopies)
{
    DateTime copy(m_march);
    DateTime assigned;
    assigned = copy;

    copy.Add(1, 0, 0);

    EXPECT_EQ(ToIso(copy), L"2009-03-05 08:04:09");
    EXPECT_EQ(ToIso(assigned), L"2009-03-05 07:04:09");
}

TEST_F(DateTimeTest, ShowsUtcAsLocalTimeAfterMakeToUtc)
{
    DateTime winter(m_march);
    DateTime summer(2009, 7, 5, 7, 4, 9);

    EXPECT_EQ(ToIso(winter.MakeToUTC()), L"2009-03-05 06:04:09");
    EXPECT_EQ(ToIso(summer.MakeToUTC()), L"2009-07-05 05:04:09");
}

TEST_F(DateTimeTest, UndoesMakeToUtcWithMakeFromUtc)
{
    DateTime date(m_march);

    EXPECT_EQ(ToIso(date.MakeToUTC().MakeFromUTC()), L"2009-03-05 07:04:09");
    EXPECT_EQ(&date.MakeFromUTC(), &date);
}

TEST_F(DateTimeTest, PadsIsoStringsAndMarksUtcWithZ)
{
    TString<wchar_t> date;
    TString<wchar_t> time;
    TString<wchar_t> utcTime;
    m_march.GetIsoDate(date, false);
    m_march.GetIsoTime(time, false);
    m_march.GetIsoTime(utcTime, true);

    EXPECT_EQ(date, L"2009-03-05");
    EXPECT_EQ(time, L"07:04:09");
    EXPECT_EQ(utcTime, L"06:04:09 Z");
    EXPECT_EQ(ToUtcIso(m_march), L"2009-03-05 06:04:09 Z");
}

TEST_F(DateTimeTest, WritesTheIsoDateOfTheDayInUtc)
{
    TString<wchar_t> date;
    DateTime(2009, 3, 5, 0, 30, 0).GetIsoDate(date, true);

    EXPECT_EQ(date, L"2009-03-04");
}

TEST_F(DateTimeTest, WritesANarrowIsoString)
{
    TString<char> text;
    m_march.GetIsoString(text, true);

    EXPECT_EQ(text, "2009-03-05 06:04:09 Z");
}

TEST_F(DateTimeTest, ParsesWhatItWrites)
{
    DateTime date;

    EXPECT_TRUE(date.ParseIsoString(TString<wchar_t>(ToUtcIso(m_march))));
    EXPECT_TRUE(date == m_march);
    EXPECT_TRUE(date.ParseIsoString(TString<char>("2009-03-05 06:04:09 Z")));
    EXPECT_TRUE(date == m_march);
    EXPECT_TRUE(date.ParseIsoString(TString<wchar_t>(ToIso(m_march))));
    EXPECT_TRUE(date == m_march);
}

TEST_F(DateTimeTest, ReadsNumbersLikeAStreamWithAnySeparator)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"2009-03-05T07:04:09", L"2009-03-05 07:04:09"},
        {L" 2009-3-7T7:4:9", L"2009-03-07 07:04:09"},
        {L"2009/03/05x07.04.09", L"2009-03-05 07:04:09"},
        {L"2009- 03-\t05 \n 07:04:09", L"2009-03-05 07:04:09"},
        {L"+2009-+3-+5 7:4:9", L"2009-03-05 07:04:09"},
        {L"2009-03-05 07:04:09Z", L"2009-03-05 07:04:09"},
        {L"2009-03-05 07:04:09 Z", L"2009-03-05 08:04:09"},
        {L"2009-03-05 07:04:09x   Zulu", L"2009-03-05 08:04:09"},
        {L"2009-03-05 07:04:09 z", L"2009-03-05 07:04:09"},
        {L"2009-03-65541 07:04:09", L"2009-03-05 07:04:09"}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(ParseToIso(text), expected) << testing::PrintToString(text);
}

TEST_F(DateTimeTest, RejectsStringsThatAreNotDates)
{
    for (const wchar_t* const text :
         {L"", L"x", L"2009", L"2009-", L"2009-03", L"2009-03-05", L"2009-03-05 07",
          L"2009-03-05 07:04", L"2009-03-05 07:04:", L"2009--03-05 07:04:09",
          L"2009-13-05 07:04:09", L"2009-02-30 07:04:09", L"2009-03-05 25:04:09",
          L"2009-03-99999999999 07:04:09", L"2009-x3-05 07:04:09"})
        EXPECT_EQ(ParseToIso(text), L"invalid") << testing::PrintToString(text);
}

TEST_F(DateTimeTest, IsInvalidAfterFailedParsing)
{
    DateTime date(m_march);

    EXPECT_FALSE(date.ParseIsoString(TString<wchar_t>(L"never")));
    EXPECT_FALSE(date.IsValid());
}

TEST_F(DateTimeTest, FormatsDateAndTimeForTheLocale)
{
    EXPECT_EQ(FormatDate(m_march), L"03/05/09");
    EXPECT_EQ(FormatTime(m_march), L"07:04 AM");

    const ScopedEnvironment german("LC_ALL", "de_DE.UTF-8");
    EXPECT_EQ(FormatDate(m_march), L"05.03.09");
    EXPECT_EQ(FormatTime(m_march), L"07:04");
}

TEST_F(DateTimeTest, ShowsNoonAndMidnightAsAM)
{
    EXPECT_EQ(FormatTime(DateTime(2009, 3, 5, 12, 30, 0)), L"12:30 AM");
    EXPECT_EQ(FormatTime(DateTime(2009, 3, 5, 0, 15, 0)), L"00:15 AM");
    EXPECT_EQ(FormatTime(DateTime(2009, 3, 5, 13, 5, 0)), L"01:05 PM");
}

TEST_F(DateTimeTest, JoinsDateAndTimeInItsString)
{
    TString<wchar_t> text;
    m_march.GetString(text);

    EXPECT_EQ(text, L"03/05/09 07:04 AM");
}

TEST_F(DateTimeTest, WritesTheTimeForTodayAndTheDateForOtherDays)
{
    // If midnight passes during the test, any string is accepted for today.
    DateTime today;
    TString<wchar_t> todayText;
    today.GetRelativeStringFromNow(todayText);
    DateTime yesterday(today);
    yesterday.Remove(0, 0, 0, 1);
    TString<wchar_t> yesterdayText;
    yesterday.GetRelativeStringFromNow(yesterdayText);

    const bool dayHasPassed = DateTime().GetDay() != today.GetDay();
    EXPECT_TRUE(todayText == FormatTime(today) || dayHasPassed);
    EXPECT_EQ(yesterdayText, FormatDate(yesterday));
}

TEST_F(DateTimeTest, TreatsTheSameDayOfAnotherMonthOrYearAsAnotherDay)
{
    DateTime monthAgo;
    monthAgo.Remove(0, 1, 0, 0);
    DateTime yearAgo;
    yearAgo.Remove(1, 0, 0, 0);

    for (const DateTime& date : {monthAgo, yearAgo}) {
        TString<wchar_t> text;
        date.GetRelativeStringFromNow(text);
        EXPECT_EQ(text, FormatDate(date));
    }
}

TEST_F(DateTimeTest, PadsNumbersWithZeros)
{
    EXPECT_EQ(m_march.IntToUString(7, 2), L"07");
    EXPECT_EQ(m_march.IntToUString(123, 2), L"123");
    EXPECT_EQ(m_march.IntToUString(-5, 4), L"00-5");
    EXPECT_EQ(m_march.IntToUString(0, 0), L"0");
    EXPECT_EQ(m_march.IntToUString(5, -3), L"5");
}

TEST_F(DateTimeTest, AddsADuration)
{
    DateTime date(m_march);

    EXPECT_EQ(ToIso(date.Add(25, 61, 61)), L"2009-03-06 09:06:10");
}

TEST_F(DateTimeTest, AddsHoursAcrossADaylightSavingChange)
{
    DateTime date(2009, 3, 28, 12, 0, 0);

    EXPECT_EQ(ToIso(date.Add(24, 0, 0)), L"2009-03-29 13:00:00");
}

TEST_F(DateTimeTest, KeepsTheTimeOfDayWhenAddingDays)
{
    DateTime date(2009, 3, 28, 12, 0, 0);

    EXPECT_EQ(ToIso(date.Add(0, 0, 0, 1)), L"2009-03-29 12:00:00");
}

TEST_F(DateTimeTest, AddsACalendarSpan)
{
    DateTime date(m_march);

    EXPECT_EQ(ToIso(date.Add(1, 2, 3, 4)), L"2010-05-30 07:04:09");
}

TEST_F(DateTimeTest, RemovesACalendarSpan)
{
    DateTime date(2010, 5, 30, 7, 4, 9);

    EXPECT_EQ(ToIso(date.Remove(1, 2, 3, 4)), L"2009-03-05 07:04:09");
}

TEST_F(DateTimeTest, ClampsTheDayToTheEndOfAShorterMonth)
{
    DateTime january(2009, 1, 31, 0, 0, 0);
    DateTime leapDay(2008, 2, 29, 0, 0, 0);
    DateTime march(2009, 3, 31, 0, 0, 0);

    EXPECT_EQ(ToIso(january.Add(0, 1, 0, 0)), L"2009-02-28 00:00:00");
    EXPECT_EQ(ToIso(leapDay.Add(1, 0, 0, 0)), L"2009-02-28 00:00:00");
    EXPECT_EQ(ToIso(march.Remove(0, 1, 0, 0)), L"2009-02-28 00:00:00");
}

TEST_F(DateTimeTest, AddsAndRemovesMonthsAcrossYears)
{
    DateTime date(2009, 11, 5, 0, 0, 0);

    EXPECT_EQ(ToIso(date.Add(0, 3, 0, 0)), L"2010-02-05 00:00:00");
    EXPECT_EQ(ToIso(date.Remove(0, 3, 0, 0)), L"2009-11-05 00:00:00");
}

TEST_F(DateTimeTest, TreatsNumbersOfASpanAsSigned)
{
    DateTime date(2009, 3, 5, 0, 0, 0);

    EXPECT_EQ(ToIso(date.Add(4294967295u, 0, 0, 0)), L"2008-03-05 00:00:00");
    EXPECT_EQ(ToIso(date.Add(0, 4294967295u, 4294967295u, 4294967295u)), L"2008-01-28 00:00:00");
    EXPECT_EQ(ToIso(date.Remove(4294967295u, 0, 0, 0)), L"2009-01-28 00:00:00");
}

TEST_F(DateTimeTest, IsInvalidWhenASpanLeadsOutOfRange)
{
    EXPECT_FALSE(DateTime(m_march).Add(292278993u, 0, 0, 0).IsValid());
    EXPECT_FALSE(DateTime(m_march).Remove(292278993u, 0, 0, 0).IsValid());
    EXPECT_FALSE(
        DateTime(m_march).Add(2147483647u, 2147483647u, 2147483647u, 2147483647u).IsValid());
}

TEST_F(DateTimeTest, SupportsYearsFromMinus292275054To292278993)
{
    const DateTime last(292278993u, 12, 31, 23, 59, 59);
    const DateTime first(static_cast<unsigned int>(-292275054), 1, 1, 0, 0, 0);

    EXPECT_EQ(ToIso(last), L"292278993-12-31 23:59:59");
    EXPECT_EQ(ToIso(first), L"-292275054-01-01 00:00:00");
    EXPECT_FALSE(DateTime(292278994u, 1, 1, 0, 0, 0).IsValid());
    EXPECT_FALSE(DateTime(static_cast<unsigned int>(-292275055), 12, 31, 0, 0, 0).IsValid());
}

TEST_F(DateTimeTest, AddsAndRemovesHundredsOfThousandsOfDays)
{
    DateTime date(2000, 2, 28, 0, 0, 0, 0);

    EXPECT_EQ(ToUtcIso(date.Add(0, 0, 0, 2u * 146097 + 1)), L"2800-02-29 00:00:00 Z");
    EXPECT_EQ(ToUtcIso(date.Remove(0, 0, 0, 2u * 146097 + 1)), L"2000-02-28 00:00:00 Z");
}

TEST_F(DateTimeTest, IsInvalidWhenDurationsLeadOutOfRange)
{
    DateTime date(m_march);
    for (int i = 0; i < 590; ++i)
        date.Add(4294967295u, 0, 0);

    EXPECT_TRUE(date.IsValid());
    for (int i = 0; i < 10; ++i)
        date.Add(4294967295u, 0, 0);
    EXPECT_FALSE(date.IsValid());
}

TEST_F(DateTimeTest, IsInvalidWhenMakeFromUtcLeadsOutOfRange)
{
    DateTime date(292278993u, 12, 31, 23, 59, 59);
    date.Add(228 * 24 + 8, 12, 56);

    EXPECT_EQ(ToUtcIso(date), L"292278994-08-17 07:12:55 Z");
    EXPECT_FALSE(date.MakeFromUTC().IsValid());
}

TEST_F(DateTimeTest, IsInvalidWhenAZoneOffsetLeadsOutOfRange)
{
    EXPECT_FALSE(DateTime(292278993u, 12, 31, 0, 0, 0, -2147483647).IsValid());
}

TEST_F(DateTimeTest, ReturnsDifferencesInWholeUnits)
{
    DateTime later(m_march);
    later.Add(26, 59, 58);

    EXPECT_EQ(later.GetTotalHours(CopyShared(m_march)), 26);
    EXPECT_EQ(later.GetTotalMinutes(CopyShared(m_march)), 26 * 60 + 59);
    EXPECT_EQ(later.GetTotalSecondes(CopyShared(m_march)), (26 * 60 + 59) * 60 + 58);
    EXPECT_EQ(m_march.GetTotalHours(CopyShared(later)), -26);
}

TEST_F(DateTimeTest, WrapsDifferencesOfMoreThan292MillionYearsAround)
{
    const DateTime last(292278993u, 12, 31, 23, 59, 59, 0);
    const DateTime first(static_cast<unsigned int>(-292275054), 1, 1, 0, 0, 0, 0);

    EXPECT_EQ(last.GetTotalSecondes(CopyShared(first)), -39536752);
}

TEST_F(DateTimeTest, TruncatesDifferencesInSecondsTo32Bits)
{
    const DateTime early(1900, 1, 1, 0, 0, 0, 0);
    const DateTime late(2100, 1, 1, 0, 0, 0, 0);

    // There are 73,049 days, or 6,311,433,600 seconds, from 1900 to 2100.
    EXPECT_EQ(late.GetTotalSecondes(CopyShared(early)), 6311433600 - (1LL << 32));
}

TEST_F(DateTimeTest, ReturnsZeroForTheDifferenceToAnEmptyPointer)
{
    EXPECT_EQ(m_march.GetTotalHours(smart_ptr<DateTime>()), 0);
    EXPECT_EQ(m_march.GetTotalMinutes(smart_ptr<DateTime>()), 0);
    EXPECT_EQ(m_march.GetTotalSecondes(smart_ptr<DateTime>()), 0);
}

TEST_F(DateTimeTest, ComparesInstantsAcrossTimeZones)
{
    const DateTime same(2009, 3, 5, 6, 4, 9, 0);
    const DateTime later(2009, 3, 5, 7, 4, 10);

    EXPECT_TRUE(m_march == same);
    EXPECT_FALSE(m_march != same);
    EXPECT_TRUE(m_march <= same && m_march >= same);
    EXPECT_FALSE(m_march < same || m_march > same);
    EXPECT_TRUE(m_march < later && m_march <= later && m_march != later);
    EXPECT_TRUE(later > m_march && later >= m_march);
    EXPECT_FALSE(m_march == later || m_march > later || m_march >= later);
}

TEST_F(DateTimeTest, OrdersInvalidDatesAsEqualAndBeforeValidOnes)
{
    const DateTime another(2009, 1, 32, 0, 0, 0);
    const DateTime early(1, 1, 1, 0, 0, 0);

    EXPECT_TRUE(m_invalid == another && m_invalid <= another && m_invalid >= another);
    EXPECT_FALSE(m_invalid != another || m_invalid < another || m_invalid > another);
    EXPECT_TRUE(m_invalid < early && m_invalid <= early && m_invalid != early);
    EXPECT_TRUE(early > m_invalid && early >= m_invalid);
}

TEST_F(DateTimeTest, ConvertsDistantYearsToUtcAndBack)
{
    DateTime date(2009, 3, 5, 0, 0, 0);
    date.Add(4294967295u, 0, 0);
    ASSERT_EQ(ToIso(date), L"491976-09-19 16:00:00");

    EXPECT_EQ(ToUtcIso(date), L"491976-09-19 14:00:00 Z");
    EXPECT_EQ(ToIso(date.MakeToUTC()), L"491976-09-19 14:00:00");
    EXPECT_EQ(ToIso(date.MakeFromUTC()), L"491976-09-19 16:00:00");
}

TEST_F(DateTimeTest, SupportsNegativeYears)
{
    DateTime date(static_cast<unsigned int>(-400), 12, 31, 12, 0, 0, 0);

    EXPECT_EQ(ToUtcIso(date), L"-400-12-31 12:00:00 Z");
    EXPECT_EQ(ToUtcIso(date.Add(24, 0, 0)), L"-399-01-01 12:00:00 Z");
    EXPECT_EQ(ToUtcIso(date.MakeToUTC().MakeFromUTC()), L"-399-01-01 12:00:00 Z");
}

} // namespace
} // namespace Toolkit
