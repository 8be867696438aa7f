#include "toolkit/base/FloatingPoint.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <utility>

namespace Toolkit::Base {
namespace {

using Parser = bool (*)(const char* begin, const char* end, double& value);

constexpr double c_untouched = -1;

// Returns the value; c_untouched if `text` is not a number.
double Parse(Parser parser, const std::string& text)
{
    double value = c_untouched;
    const bool isNumber = parser(text.data(), text.data() + text.size(), value);
    EXPECT_EQ(isNumber, value != c_untouched) << text;
    return value;
}

class FloatingPointTest : public testing::TestWithParam<Parser> {};

INSTANTIATE_TEST_SUITE_P(Parsers, FloatingPointTest,
                         testing::Values(&ParseFloatingPoint, &ParseFloatingPointByStrtod),
                         [](const auto& parser) {
                             return parser.index == 0 ? "Default" : "Strtod";
                         });

TEST_P(FloatingPointTest, ParsesDecimalNumbers)
{
    constexpr std::pair<const char*, double> cases[] = {{"0", 0},
                                                        {"7", 7},
                                                        {"1.5", 1.5},
                                                        {".5", 0.5},
                                                        {"5.", 5},
                                                        {"2e3", 2000},
                                                        {"2E-3", 0.002},
                                                        {"1e+2", 100},
                                                        {"0012", 12},
                                                        {"0.1", 0.1},
                                                        {"123456789.123", 123456789.123}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(Parse(GetParam(), text), expected) << text;
}

TEST_P(FloatingPointTest, RejectsInvalidNumbers)
{
    for (const char* text : {"", "x", "1x", "1e", "1e+", "1,5", "."})
        EXPECT_EQ(Parse(GetParam(), text), c_untouched) << text;
}

TEST_P(FloatingPointTest, ReturnsTheLargestFiniteValueOnOverflow)
{
    EXPECT_EQ(Parse(GetParam(), "1e309"), std::numeric_limits<double>::max());
    EXPECT_EQ(Parse(GetParam(), std::string(400, '9')), std::numeric_limits<double>::max());
}

TEST_P(FloatingPointTest, ReturnsTheNearestValueOnUnderflow)
{
    EXPECT_EQ(Parse(GetParam(), "1e-400"), 0);
    EXPECT_EQ(Parse(GetParam(), "4.9406564584124654e-324"), 4.9406564584124654e-324);
}

std::string RandomNumber(std::mt19937& random)
{
    std::string text;
    for (auto length = random() % 25; length > 0; --length)
        text += static_cast<char>('0' + random() % 10);
    if (random() % 2 == 0)
        text += '.' + std::to_string(random());
    if (random() % 2 == 0)
        text += (random() % 2 == 0 ? "e" : "e-") + std::to_string(random() % 340);
    return text;
}

TEST(FloatingPointComparisonTest, MatchesStrtodBitForBit)
{
    constexpr int rounds = 50'000;
    std::mt19937 random(1);
    for (int round = 0; round < rounds; ++round) {
        const std::string text = RandomNumber(random);
        const double byDefault = Parse(&ParseFloatingPoint, text);
        const double byStrtod = Parse(&ParseFloatingPointByStrtod, text);
        ASSERT_EQ(std::memcmp(&byDefault, &byStrtod, sizeof byDefault), 0) << text;
    }
}

} // namespace
} // namespace Toolkit::Base
