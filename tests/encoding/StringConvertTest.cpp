#include "toolkit/encoding/StringConvert.h"

#include "support/CompiledLocale.h"
#include "support/OutOfMemory.h"
#include "support/ScopedLocale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>

namespace Toolkit {
namespace {

using Wide = TString<wchar_t>;
using Narrow = TString<char>;

constexpr int c_minInt = std::numeric_limits<int>::min();
constexpr int c_maxInt = std::numeric_limits<int>::max();
constexpr long long c_minLong = std::numeric_limits<long long>::min();
constexpr long long c_maxLong = std::numeric_limits<long long>::max();

// Parses a string in narrow and in wide form. The results must agree. Values start as `initial`.
template <typename Number>
class Reader {
public:
    using NarrowOperation = bool (*)(const Narrow&, Number&);
    using WideOperation = bool (*)(const Wide&, Number&);

    Reader(NarrowOperation narrow, WideOperation wide) : m_narrow(narrow), m_wide(wide) {}

    Number Read(const std::string& text, Number initial) const
    {
        Number narrowValue = initial;
        Number wideValue = initial;
        EXPECT_TRUE(m_narrow(text, narrowValue));
        EXPECT_TRUE(m_wide(std::wstring(text.begin(), text.end()), wideValue));
        EXPECT_EQ(narrowValue, wideValue);
        return wideValue;
    }

private:
    NarrowOperation m_narrow;
    WideOperation m_wide;
};

const Reader<int> c_int32(StringConvert::ToInt32, StringConvert::ToInt32);
const Reader<unsigned int> c_uint32(StringConvert::ToUint32, StringConvert::ToUint32);
const Reader<long long> c_int64(StringConvert::ToInt64, StringConvert::ToInt64);
const Reader<unsigned long long> c_uint64(StringConvert::ToUint64, StringConvert::ToUint64);
const Reader<double> c_double(StringConvert::ToDouble, StringConvert::ToDouble);

TEST(StringConvertTest, ReadsTheIntegerAtTheBeginning)
{
    constexpr std::pair<const char*, int> cases[] = {
        {" -12x", -12}, {"42", 42}, {"+7", 7},   {"007", 7},   {"\t\n\v\f\r 8", 8},
        {"1,000", 1},   {"1.9", 1}, {"0x1F", 0}, {"12 34", 12}};
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(c_int32.Read(text, 77), expected);
        EXPECT_EQ(c_int64.Read(text, 77), expected);
    }
}

TEST(StringConvertTest, LeavesAnIntegerUnchangedWithoutANumber)
{
    for (const char* const text : {"", " ", "abc", "-", "+", "- 1", "+-1", "--1", ".", ",1",
                                   "\xA0"
                                   "1"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(c_int32.Read(text, 77), 77);
        EXPECT_EQ(c_uint32.Read(text, 77), 77u);
        EXPECT_EQ(c_int64.Read(text, 77), 77);
        EXPECT_EQ(c_uint64.Read(text, 77), 77u);
    }
}

TEST(StringConvertTest, ReadsIntegersOutOfRangeAsTheNearestLimit)
{
    EXPECT_EQ(c_int32.Read("2147483647", 0), c_maxInt);
    EXPECT_EQ(c_int32.Read("2147483648", 0), c_maxInt);
    EXPECT_EQ(c_int32.Read("-2147483648", 0), c_minInt);
    EXPECT_EQ(c_int32.Read("-2147483649", 0), c_minInt);
    EXPECT_EQ(c_int64.Read("9223372036854775807", 0), c_maxLong);
    EXPECT_EQ(c_int64.Read("9223372036854775808", 0), c_maxLong);
    EXPECT_EQ(c_int64.Read("-9223372036854775808", 0), c_minLong);
    EXPECT_EQ(c_int64.Read("-" + std::string(500, '9'), 0), c_minLong);
}

TEST(StringConvertTest, ReadsUnsignedIntegersOutOfRangeAsTheLimit)
{
    EXPECT_EQ(c_uint32.Read("4294967295", 0), 4294967295u);
    EXPECT_EQ(c_uint32.Read("4294967296", 0), 4294967295u);
    EXPECT_EQ(c_uint64.Read("18446744073709551615", 0), 18446744073709551615ull);
    EXPECT_EQ(c_uint64.Read("18446744073709551616", 0), 18446744073709551615ull);
}

TEST(StringConvertTest, WrapsNegativeNumbersAroundInUnsignedTypes)
{
    EXPECT_EQ(c_uint32.Read("-1", 0), 4294967295u);
    EXPECT_EQ(c_uint32.Read("-4294967295", 0), 1u);
    EXPECT_EQ(c_uint32.Read("-4294967296", 0), 4294967295u);
    EXPECT_EQ(c_uint64.Read("-1", 0), 18446744073709551615ull);
}

TEST(StringConvertTest, ReadsDoublesInEveryNotation)
{
    constexpr std::pair<const char*, double> cases[] = {
        {"0.5", 0.5},       {".5", 0.5},
        {"5.", 5.0},        {"-1.25e2x", -125.0},
        {"+1E-2", 0.01},    {" \t3", 3.0},
        {"1,5", 1.0},       {"1.2.3", 1.2},
        {"0x10", 0.0},      {"1e5e5", 1e5},
        {"0.1", 0.1},       {"1.7976931348623157e308", 1.7976931348623157e308},
        {"5e-324", 5e-324}, {"9007199254740993", 9007199254740992.0}};
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(c_double.Read(text, 77), expected);
    }
}

TEST(StringConvertTest, LeavesADoubleUnchangedWithoutANumber)
{
    for (const char* const text :
         {"", "abc", ".", "-.", "e5", ".e5", "1e", "1e+", "inf", "nan", "- 1"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(c_double.Read(text, 77), 77);
    }
}

TEST(StringConvertTest, ReadsDoublesOutOfRangeAsTheNearestLimit)
{
    constexpr double max = std::numeric_limits<double>::max();

    EXPECT_EQ(c_double.Read("1e309", 0), max);
    EXPECT_EQ(c_double.Read("-1e309", 0), -max);
    EXPECT_EQ(c_double.Read("1e99999999999999999999", 0), max);
    EXPECT_EQ(c_double.Read(std::string(400, '9'), 0), max);
    EXPECT_EQ(c_double.Read("1e-999", 77), 0);
    EXPECT_TRUE(std::signbit(c_double.Read("-1e-999", 77)));
    EXPECT_EQ(c_double.Read("0e99999999999999999999", 77), 0);
}

TEST(StringConvertTest, ReadsLongStringsOfDigits)
{
    EXPECT_EQ(c_double.Read(std::string(300, '0') + "1.5", 0), 1.5);
    EXPECT_EQ(c_double.Read("0." + std::string(100, '0') + "1", 0), 1e-101);
    EXPECT_EQ(c_int32.Read(std::string(300, '0') + "15", 0), 15);
}

TEST(StringConvertTest, TreatsOnlyAsciiCharactersAsDigitsAndSpaces)
{
    for (const wchar_t* const text : {L"\u0661", L"\uFF11", L"\u00A01", L"\u20031",
                                      L"\u0085"
                                      L"1"}) {
        int integer = 77;
        double floating = 77;
        EXPECT_TRUE(StringConvert::ToInt32(Wide(text), integer));
        EXPECT_TRUE(StringConvert::ToDouble(Wide(text), floating));
        EXPECT_EQ(integer, 77);
        EXPECT_EQ(floating, 77);
    }
}

TEST(StringConvertTest, EndsTheNumberAtANullCharacter)
{
    int value = 0;

    EXPECT_TRUE(StringConvert::ToInt32(Wide(std::wstring(L"12\0"
                                                         L"34",
                                                         5)),
                                       value));

    EXPECT_EQ(value, 12);
}

TEST(StringConvertTest, WritesIntegersAsPlainDigits)
{
    EXPECT_EQ(StringConvert::UStringFromInt32(0), L"0");
    EXPECT_EQ(StringConvert::UStringFromInt32(-1234567), L"-1234567");
    EXPECT_EQ(StringConvert::UStringFromInt32(c_minInt), L"-2147483648");
    EXPECT_EQ(StringConvert::UStringFromUint32(4294967295u), L"4294967295");
    EXPECT_EQ(StringConvert::UStringFromInt64(c_minLong), L"-9223372036854775808");
    EXPECT_EQ(StringConvert::UStringFromUInt64(18446744073709551615ull), L"18446744073709551615");
}

TEST(StringConvertTest, WritesNarrowIntegersAsPlainDigits)
{
    EXPECT_EQ(StringConvert::StringFromInt32(c_minInt), "-2147483648");
    EXPECT_EQ(StringConvert::StringFromUint32(4294967295u), "4294967295");
    EXPECT_EQ(StringConvert::StringFromInt64(c_maxLong), "9223372036854775807");
    EXPECT_EQ(StringConvert::StringFromUInt64(0), "0");
}

TEST(StringConvertTest, WritesSixDigitsOfADoubleInTheShorterNotation)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::pair<double, std::string> cases[] = {
        {0.5, "0.5"},
        {1234567.0, "1.23457e+06"},
        {123456.0, "123456"},
        {0.0, "0"},
        {-0.0, "-0"},
        {-1.25, "-1.25"},
        {0.0001, "0.0001"},
        {0.00001, "1e-05"},
        {1e100, "1e+100"},
        {999999.5, "1e+06"},
        {0.1 + 0.2, "0.3"},
        {2.0 / 3.0, "0.666667"},
        {-1.2345678e-300, "-1.23457e-300"},
        {infinity, "inf"},
        {-infinity, "-inf"},
        {std::numeric_limits<double>::quiet_NaN(), "nan"}};
    for (const auto& [value, expected] : cases) {
        SCOPED_TRACE(expected);
        EXPECT_EQ(StringConvert::StringFromDouble(value), expected);
        EXPECT_EQ(StringConvert::UStringFromDouble(value),
                  std::wstring(expected.begin(), expected.end()));
    }
}

TEST(StringConvertTest, ReturnsEmptyStringsWhenOutOfMemory)
{
    const Wide text = L"a string that is too long for the small-string buffer";
    const TestSupport::AllocationLimit limit(20);

    EXPECT_EQ(StringConvert::UStringFromInt32(c_minInt), L"");
    EXPECT_EQ(StringConvert::UStringFromInt64(c_minLong), L"");
    EXPECT_EQ(StringConvert::UStringFromDouble(1.5e100), L"");
    EXPECT_EQ(StringConvert::StringFromInt64(c_minLong), "");
    EXPECT_EQ(StringConvert::GetCharactersFromRight(text, 100), L"");
}

TEST(StringConvertTest, DoesNotReadALongNumberWhenOutOfMemory)
{
    const std::string digits(300, '9');
    const std::wstring wideDigits(300, L'9');
    double value = 77;
    {
        const Narrow narrow(digits);
        const Wide wide(wideDigits);
        const TestSupport::AllocationLimit limit(20);
        EXPECT_TRUE(StringConvert::ToDouble(narrow, value));
        EXPECT_TRUE(StringConvert::ToDouble(wide, value));
    }
    EXPECT_EQ(value, 77);
}

TEST(StringConvertTest, IgnoresTheLocaleOfTheCLibrary)
{
    const TestSupport::CompiledLocale german("de_DE", "UTF-8");
    if (!german.IsAvailable())
        GTEST_SKIP() << "no German locale on this system";
    const TestSupport::ScopedLocale locale(german.Name());

    EXPECT_EQ(StringConvert::StringFromDouble(1.5), "1.5");
    EXPECT_EQ(c_double.Read("1.5", 0), 1.5);
    EXPECT_EQ(c_double.Read("1,5", 0), 1.0);
}

TEST(StringConvertTest, SkipsSpacesInGetCharactersFromRight)
{
    EXPECT_EQ(StringConvert::GetCharactersFromRight(L"12 34 56", 4), L"3456");
    EXPECT_EQ(StringConvert::GetCharactersFromRight(L"12 34 56", 0), L"");
    EXPECT_EQ(StringConvert::GetCharactersFromRight(L"12 34 56", 100), L"123456");
    EXPECT_EQ(StringConvert::GetCharactersFromRight(L"12 34 56  ", 1), L"6");
    EXPECT_EQ(StringConvert::GetCharactersFromRight(L"   ", 2), L"");
    EXPECT_EQ(StringConvert::GetCharactersFromRight(L"", 4294967295u), L"");
}

TEST(StringConvertTest, CountsOtherWhiteSpaceInGetCharactersFromRight)
{
    EXPECT_EQ(StringConvert::GetCharactersFromRight(L"a\tb\u00A0", 3), L"\tb\u00A0");
}

TEST(StringConvertTest, CutsTheResultOfGetCharactersFromRightAtANull)
{
    EXPECT_EQ(StringConvert::GetCharactersFromRight(Wide(std::wstring(L"ab\0cd", 5)), 4), L"b");
    EXPECT_EQ(StringConvert::GetCharactersFromRight(Wide(std::wstring(L"ab\0cd", 5)), 2), L"cd");
    EXPECT_EQ(StringConvert::GetCharactersFromRight(Wide(std::wstring(L"ab\0cd", 5)), 3), L"");
}

} // namespace
} // namespace Toolkit
