// Compares number parsing and formatting with fresh standard streams under the classic locale,
// while the global locale groups digits.

#include "toolkit/core/TString.h"
#include "toolkit/encoding/StringConvert.h"

#include "support/RandomText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <locale>
#include <sstream>
#include <string>
#include <type_traits>

namespace Toolkit {
namespace {

using TestSupport::RandomText;

constexpr int c_rounds = 50000;

template <typename Char>
class GroupingPunctuation : public std::numpunct<Char> {
protected:
    Char do_decimal_point() const override { return ','; }
    Char do_thousands_sep() const override { return '1'; }
    std::string do_grouping() const override { return "\2"; }
};

class StringConvertReferenceTest : public testing::Test {
protected:
    StringConvertReferenceTest() : m_oldLocale(std::locale::global(CreateGroupingLocale())) {}
    ~StringConvertReferenceTest() override { std::locale::global(m_oldLocale); }

private:
    static std::locale CreateGroupingLocale()
    {
        const std::locale narrow(std::locale::classic(), new GroupingPunctuation<char>());
        return std::locale(narrow, new GroupingPunctuation<wchar_t>());
    }

    std::locale m_oldLocale;
};

// The value before parsing. It stays unchanged if the string does not begin with a number.
template <typename Number>
constexpr Number c_initialValue = 77;

// Returns the value that a stream reads from `text`. If there is no number, returns the initial
// value instead of the 0 that the stream stores.
template <typename Char, typename Number>
Number ParseWithStream(const std::basic_string<Char>& text)
{
    std::basic_istringstream<Char> stream(text, std::ios_base::in);
    stream.imbue(std::locale::classic());
    Number value = c_initialValue<Number>;
    stream >> value;
    return stream.fail() && value == 0 ? c_initialValue<Number> : value;
}

template <typename Char, typename Number>
std::basic_string<Char> FormatWithStream(Number value)
{
    std::basic_ostringstream<Char> stream;
    stream.imbue(std::locale::classic());
    stream << value;
    return stream.str();
}

// Compares bits, to distinguish 0 from -0.
template <typename Number>
bool IsSame(Number left, Number right)
{
    if constexpr (std::is_floating_point_v<Number>)
        return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
    else
        return left == right;
}

template <typename Char, typename Number>
void ExpectStreamValue(bool (*parse)(const TString<Char>&, Number&),
                       const std::basic_string<Char>& text)
{
    Number value = c_initialValue<Number>;
    EXPECT_TRUE(parse(text, value));
    const Number expected = ParseWithStream<Char, Number>(text);
    EXPECT_TRUE(IsSame(value, expected))
        << testing::PrintToString(text) << " parses as " << value << ", not " << expected;
}

template <typename Char>
void ExpectStreamValues(const std::basic_string<Char>& text)
{
    ExpectStreamValue<Char, int>(StringConvert::ToInt32, text);
    ExpectStreamValue<Char, unsigned int>(StringConvert::ToUint32, text);
    ExpectStreamValue<Char, long long>(StringConvert::ToInt64, text);
    ExpectStreamValue<Char, unsigned long long>(StringConvert::ToUint64, text);
    ExpectStreamValue<Char, double>(StringConvert::ToDouble, text);
}

TEST_F(StringConvertReferenceTest, ReadsRandomStringsLikeAStream)
{
    RandomText random(1);
    for (int round = 0; round < c_rounds && !HasFailure(); ++round) {
        ExpectStreamValues(random.Text<char>("0123456789999+-.eE x,\t\xA0", 24));
        ExpectStreamValues(random.Text<wchar_t>(L"0123456789999+-.eE x,\t\u2003\u0661", 24));
    }
}

TEST_F(StringConvertReferenceTest, ReadsNumbersLikeAStream)
{
    RandomText random(2);
    for (int round = 0; round < c_rounds && !HasFailure(); ++round) {
        const std::string digits = random.Text<char>("0123456789", 22);
        const std::string fraction = random.Text<char>("0123456789", round % 50 == 0 ? 400 : 20);
        const std::string exponent = std::to_string(random.Number(-345, 345));
        const std::string sign = random.Text<char>(" -+", 1);

        ExpectStreamValues(sign + digits);
        ExpectStreamValues(sign + digits + "." + fraction);
        ExpectStreamValues(sign + digits + "." + fraction + "e" + exponent);
        ExpectStreamValues(sign + digits + "E" + exponent + "z");
    }
}

TEST_F(StringConvertReferenceTest, ReadsIntegersWithTStringLikeAStream)
{
    RandomText random(3);
    for (int round = 0; round < c_rounds && !HasFailure(); ++round) {
        const std::wstring text = random.Text<wchar_t>(L"0123456789+- x", 13);
        std::wistringstream stream(text);
        stream.imbue(std::locale::classic());
        int expected = 0;
        stream >> expected;

        EXPECT_EQ(TString<wchar_t>(text).ToInt32(), expected) << text;
    }
}

template <typename Number, typename Draw>
void ExpectStreamStrings(TString<wchar_t> (*wide)(Number), TString<char> (*narrow)(Number),
                         const Draw& draw)
{
    for (int round = 0; round < c_rounds && !testing::Test::HasFailure(); ++round) {
        const Number value = draw();
        EXPECT_EQ(wide(value), (FormatWithStream<wchar_t, Number>(value)));
        EXPECT_EQ(narrow(value), (FormatWithStream<char, Number>(value)));
    }
}

TEST_F(StringConvertReferenceTest, WritesIntegersLikeAStream)
{
    RandomText random(4);
    // Shifts the number so that all lengths occur.
    const auto draw = [&random]<typename Number>(Number) {
        const auto bits = random.Number<std::uint64_t>(0, ~std::uint64_t{0});
        return static_cast<Number>(static_cast<Number>(bits) >>
                                   random.Number<int>(0, 8 * sizeof(Number) - 1));
    };
    ExpectStreamStrings<int>(StringConvert::UStringFromInt32, StringConvert::StringFromInt32,
                             [&] { return draw(int{}); });
    ExpectStreamStrings<unsigned int>(StringConvert::UStringFromUint32,
                                      StringConvert::StringFromUint32, [&] { return draw(0u); });
    ExpectStreamStrings<long long>(StringConvert::UStringFromInt64, StringConvert::StringFromInt64,
                                   [&] { return draw(0ll); });
    ExpectStreamStrings<unsigned long long>(StringConvert::UStringFromUInt64,
                                            StringConvert::StringFromUInt64,
                                            [&] { return draw(0ull); });
}

TEST_F(StringConvertReferenceTest, WritesDoublesWithRandomBitsLikeAStream)
{
    RandomText random(5);
    ExpectStreamStrings<double>(
        StringConvert::UStringFromDouble, StringConvert::StringFromDouble, [&random] {
            return std::bit_cast<double>(random.Number<std::uint64_t>(0, ~std::uint64_t{0}));
        });
}

TEST_F(StringConvertReferenceTest, WritesDoublesOfOrdinarySizeLikeAStream)
{
    RandomText random(6);
    // Divides by powers of 2 and of 10: some quotients are exactly halfway between two numbers of
    // six digits.
    ExpectStreamStrings<double>(
        StringConvert::UStringFromDouble, StringConvert::StringFromDouble, [&random] {
            const double numerator = random.Number(-200000000, 200000000);
            return numerator /
                   std::pow(random.Number(0, 1) == 0 ? 2.0 : 10.0, random.Number(0, 12));
        });
}

} // namespace
} // namespace Toolkit
