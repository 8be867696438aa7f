#include "toolkit/datetime/DateTime.h"

#include "support/ScopedTimeZone.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>

namespace Toolkit {
namespace {

using TestSupport::ScopedTimeZone;

constexpr int c_instantCount = 20000;

// Returns a random instant from 1902 to the beginning of 2107. Half of the instants are on the
// hour, because most clock changes are.
std::time_t PickInstant(std::mt19937_64& random)
{
    std::uniform_int_distribution<std::time_t> instants(-2145916800, 4323801600);
    std::time_t instant = instants(random);
    if (random() % 2 == 0)
        instant -= instant % 3600;
    return instant;
}

std::string FormatWithStrftime(const char* format, const std::tm& fields)
{
    char text[64];
    std::strftime(text, sizeof text, format, &fields);
    return text;
}

std::string ToIso(const DateTime& date, bool utc)
{
    TString<char> text;
    date.GetIsoString(text, utc);
    return text;
}

std::tm ToUtcFields(std::time_t instant)
{
    std::tm fields{};
    ::gmtime_r(&instant, &fields);
    return fields;
}

std::tm ToLocalFields(std::time_t instant)
{
    std::tm fields{};
    ::localtime_r(&instant, &fields);
    return fields;
}

DateTime FromUtc(const std::tm& utc)
{
    return DateTime(
        static_cast<unsigned int>(utc.tm_year + 1900), static_cast<unsigned int>(utc.tm_mon + 1),
        static_cast<unsigned int>(utc.tm_mday), static_cast<unsigned int>(utc.tm_hour),
        static_cast<unsigned int>(utc.tm_min), static_cast<unsigned int>(utc.tm_sec), 0);
}

// Ignores tm_isdst, as mktime() does if it is -1.
DateTime FromLocal(const std::tm& local)
{
    return DateTime(
        static_cast<unsigned int>(local.tm_year + 1900),
        static_cast<unsigned int>(local.tm_mon + 1), static_cast<unsigned int>(local.tm_mday),
        static_cast<unsigned int>(local.tm_hour), static_cast<unsigned int>(local.tm_min),
        static_cast<unsigned int>(local.tm_sec));
}

// Describes how DateTime differs from the C library at `instant`. Returns an empty string if it
// does not.
std::string DescribeDifferenceAt(std::time_t instant)
{
    const std::string utc = FormatWithStrftime("%Y-%m-%d %H:%M:%S Z", ToUtcFields(instant));
    const DateTime date = FromUtc(ToUtcFields(instant));
    if (ToIso(date, true) != utc)
        return "UTC string " + ToIso(date, true) + " instead of " + utc;

    const std::tm local = ToLocalFields(instant);
    const std::string localString = FormatWithStrftime("%Y-%m-%d %H:%M:%S", local);
    if (ToIso(date, false) != localString)
        return "local string " + ToIso(date, false) + " instead of " + localString;

    DateTime parsed;
    if (!parsed.ParseIsoString(TString<char>(utc)) || parsed != date)
        return "wrong result of parsing " + utc;

    std::tm undecided = local;
    undecided.tm_isdst = -1;
    const DateTime built = FromLocal(local);
    if (built != FromUtc(ToUtcFields(std::mktime(&undecided))))
        return "wrong result of constructing " + localString;
    return {};
}

// Checks `zone` in a process that has used no other zone, so that nothing cached affects the
// result. Exits with 0 if DateTime agrees with the C library.
[[noreturn]] void CheckZoneInChild(const char* zone)
{
    ::setenv("TZ", zone, 1);
    ::tzset();
    std::mt19937_64 random(1);
    for (int i = 0; i < c_instantCount; ++i) {
        const std::time_t instant = PickInstant(random);
        const std::string difference = DescribeDifferenceAt(instant);
        if (difference.empty())
            continue;
        std::fprintf(stderr, "%s at %lld: %s\n", zone, static_cast<long long>(instant),
                     difference.c_str());
        std::_Exit(1);
    }
    std::_Exit(0);
}

class DateTimeZonesDeathTest : public testing::TestWithParam<const char*> {};

TEST_P(DateTimeZonesDeathTest, AgreesWithTheCLibrary)
{
    GTEST_FLAG_SET(death_test_style, "fast");

    EXPECT_EXIT(CheckZoneInChild(GetParam()), testing::ExitedWithCode(0), "");
}

INSTANTIATE_TEST_SUITE_P(Zones, DateTimeZonesDeathTest,
                         testing::Values("UTC", "Europe/Berlin", "America/New_York",
                                         "Australia/Lord_Howe", "Asia/Kolkata", "Pacific/Apia",
                                         "America/St_Johns", "<+24>-24", "<-24>24", "XXX-24:59:59",
                                         "AAA23BBB24,J60/2,J300/2", "right/Europe/Berlin",
                                         "right/UTC"));

struct LocalTime {
    const char* zone;
    std::array<unsigned int, 6> fields;
    const char* utc;
};

class DateTimeClockChangesTest : public testing::TestWithParam<LocalTime> {};

TEST_P(DateTimeClockChangesTest, ConvertsLocalTimeToUtc)
{
    const ScopedTimeZone zone(GetParam().zone);
    const auto& fields = GetParam().fields;

    const DateTime date(fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]);

    EXPECT_EQ(ToIso(date, true), GetParam().utc);
}

// Times just before and after clock changes, in a zone without clock changes, and after 2038.
INSTANTIATE_TEST_SUITE_P(
    Changes, DateTimeClockChangesTest,
    testing::Values(
        LocalTime{"Europe/Berlin", {2009, 3, 29, 1, 59, 59}, "2009-03-29 00:59:59 Z"},
        LocalTime{"Europe/Berlin", {2009, 3, 29, 3, 0, 0}, "2009-03-29 01:00:00 Z"},
        LocalTime{"Europe/Berlin", {2009, 10, 25, 1, 59, 59}, "2009-10-24 23:59:59 Z"},
        LocalTime{"Europe/Berlin", {2009, 10, 25, 3, 0, 0}, "2009-10-25 02:00:00 Z"},
        LocalTime{"America/New_York", {2009, 3, 8, 1, 59, 59}, "2009-03-08 06:59:59 Z"},
        LocalTime{"America/New_York", {2009, 3, 8, 3, 0, 0}, "2009-03-08 07:00:00 Z"},
        LocalTime{"Australia/Lord_Howe", {2009, 4, 5, 1, 29, 59}, "2009-04-04 14:29:59 Z"},
        LocalTime{"Australia/Lord_Howe", {2009, 10, 4, 2, 30, 0}, "2009-10-03 15:30:00 Z"},
        LocalTime{"Pacific/Apia", {2011, 12, 31, 0, 0, 0}, "2011-12-30 10:00:00 Z"},
        LocalTime{"Asia/Kolkata", {2009, 6, 1, 0, 0, 0}, "2009-05-31 18:30:00 Z"},
        LocalTime{"Europe/Berlin", {2040, 7, 1, 12, 0, 0}, "2040-07-01 10:00:00 Z"}));

} // namespace
} // namespace Toolkit
