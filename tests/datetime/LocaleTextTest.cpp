#include "references/LocaleText.h"

#include "toolkit/datetime/LocaleText.Private.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>
#include <utility>

namespace Toolkit {
namespace {

constexpr CalendarTime c_morning{2009, 3, 5, 7, 4, 9};
constexpr CalendarTime c_afternoon{2009, 3, 5, 19, 4, 9};

DayPeriods GetEnglishDayPeriods()
{
    return {L"AM", L"PM"};
}

DayPeriods GetDayPeriodsWithLetterA()
{
    return {L"am", L"pa"};
}

DayPeriods GetEmptyDayPeriods()
{
    return {L"", L""};
}

std::wstring RandomPattern(std::mt19937& random)
{
    constexpr const wchar_t* pieces[] = {L"d", L"dd", L"M", L"MM", L"y",  L"yy", L"yyyy", L"H",
                                         L"h", L"m",  L":", L"/",  L" ",  L"a",  L":ss",  L" tt",
                                         L"%", L"%d", L"T", L"R",  L"%T", L"Y",  L"B",    L"."};
    std::wstring pattern;
    for (auto count = random() % 12; count > 0; --count)
        pattern += pieces[random() % std::size(pieces)];
    return pattern;
}

TEST(LocaleTextTest, ReplacesDateTokensInAFixedOrder)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"dd/MM/yyyy HH:mm:ss", L"05/03/2009"},
        {L"M/d/yy h:mm a", L"03/05/09"},
        {L"%d.%m.%Y %H", L"05.03.2009"},
        {L"MMM d", L"0303"},
        {L"MMMM", L"0303"},
        {L"ddd", L"0505"},
        {L"y-M-d", L"y-03-05"},
        {L"yyy", L"09y"},
        {L"yyyyy", L"2009y"},
        {L"yyyy", L"2009"},
        {L"none", L"none"},
        {L" HH:mm", L""},
        {L"", L""}};
    for (const auto& [pattern, expected] : cases)
        EXPECT_EQ(FormatDateByPattern(pattern, c_morning), expected)
            << testing::PrintToString(pattern);
}

TEST(LocaleTextTest, FormatsTheYearOfTheCentury)
{
    CalendarTime time = c_morning;
    constexpr std::pair<long long, const wchar_t*> cases[] = {
        {2009, L"09"}, {1999, L"99"}, {2100, L"00"}, {99, L"99"}, {0, L"100"}, {-1, L"99"}};
    for (const auto& [year, expected] : cases) {
        time.year = year;
        EXPECT_EQ(FormatDateByPattern(L"yy", time), expected) << year;
    }
}

TEST(LocaleTextTest, ReplacesTimeTokensInAFixedOrder)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"dd/MM/yyyy HH:mm:ss", L"19:04"},
        {L"M/d/yy h:mm a", L"07:04 PM"},
        {L"d hh:mm a", L"19:04 "},
        {L"d hh:mm tt", L"19:04"},
        {L"d h:mm tt", L"07:04 PM"},
        {L"d H:mm", L"H:04"},
        {L"d HHH", L"19H"},
        {L"d %T", L"19:04"},
        {L"d h %R", L"07 07:04 PM"},
        {L"d a h:m", L"PM 07:04"},
        {L"HH:mm", L"19:04"},
        {L"", L""}};
    for (const auto& [pattern, expected] : cases)
        EXPECT_EQ(FormatTimeByPattern(pattern, c_afternoon, GetEnglishDayPeriods), expected)
            << testing::PrintToString(pattern);
}

TEST(LocaleTextTest, ShowsNoonAndMidnightAsAMInTwelveHourPatterns)
{
    CalendarTime time = c_morning;
    constexpr std::pair<long long, const wchar_t*> cases[] = {{0, L"00 AM"},  {1, L"01 AM"},
                                                              {11, L"11 AM"}, {12, L"12 AM"},
                                                              {13, L"01 PM"}, {23, L"11 PM"}};
    for (const auto& [hour, expected] : cases) {
        time.hour = hour;
        EXPECT_EQ(FormatTimeByPattern(L"d h a", time, GetEnglishDayPeriods), expected) << hour;
    }
}

TEST(LocaleTextTest, DoesNotReplaceTokensInsideDayPeriods)
{
    EXPECT_EQ(FormatTimeByPattern(L"d h:mm a", c_morning, GetDayPeriodsWithLetterA), L"07:04 am");
    EXPECT_EQ(FormatTimeByPattern(L"d h:mm aa", c_afternoon, GetDayPeriodsWithLetterA),
              L"07:04 papa");
    EXPECT_EQ(FormatTimeByPattern(L"d h:mm", c_morning, GetDayPeriodsWithLetterA), L"07:04 am");
}

TEST(LocaleTextTest, KeepsTheTokenOrAppendsASpaceWithoutDayPeriods)
{
    EXPECT_EQ(FormatTimeByPattern(L"d h:mm a", c_morning, GetEmptyDayPeriods), L"07:04 a");
    EXPECT_EQ(FormatTimeByPattern(L"d h:mm", c_morning, GetEmptyDayPeriods), L"07:04 ");
}

TEST(LocaleTextTest, AgreesWithRepeatedReplacementOnRandomPatterns)
{
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        const std::wstring pattern = RandomPattern(random);
        SCOPED_TRACE(testing::PrintToString(pattern));
        ASSERT_EQ(FormatDateByPattern(pattern, c_morning), References::FormatDate(pattern));
        ASSERT_EQ(FormatTimeByPattern(pattern, c_afternoon, GetEnglishDayPeriods),
                  References::FormatTime(pattern));
    }
}

} // namespace
} // namespace Toolkit
