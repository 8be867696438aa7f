#include "toolkit/system/LocalePatterns.Private.h"

#include <gtest/gtest.h>

#include <string>

namespace Toolkit {
namespace {

TEST(LocalePatternsTest, JoinsDateAndTimeWithOneSpace)
{
    EXPECT_EQ(JoinPatterns(L"M/d/yy", L"h:mm a"), L"M/d/yy h:mm a");
}

TEST(LocalePatternsTest, OmitsANonAsciiPattern)
{
    EXPECT_EQ(JoinPatterns(L"d\u00E9", L"HH:mm"), L" HH:mm");
    EXPECT_EQ(JoinPatterns(L"d", L"HH\u202Fmm"), L"d ");
    EXPECT_EQ(JoinPatterns(L"\u00E9", L"\u00E9"), L" ");
}

TEST(LocalePatternsTest, OmitsAPatternLongerThan255Characters)
{
    const std::wstring longest(255, L'd');
    const std::wstring tooLong(256, L'd');

    EXPECT_EQ(JoinPatterns(longest, L"h"), longest + L" h");
    EXPECT_EQ(JoinPatterns(tooLong, L"h"), L" h");
}

TEST(LocalePatternsTest, ReturnsASpaceForTwoEmptyPatterns)
{
    EXPECT_EQ(JoinPatterns(L"", L""), L" ");
}

} // namespace
} // namespace Toolkit
