#include "toolkit/system/LocalePatterns.Private.h"

#include <gtest/gtest.h>

#include <string>

#include "mac/CoreFoundationStandIn.h"

namespace Toolkit {
namespace {

TEST(LocalePatternsMacTest, ReturnsTheShortPatternsOfTheLocale)
{
    MacStandIns::SetShortPatterns("M/d/yy", "h:mm a");

    EXPECT_EQ(ReadShortDatePattern(), L"M/d/yy");
    EXPECT_EQ(ReadShortTimePattern(), L"h:mm a");
}

TEST(LocalePatternsMacTest, ReturnsAnEmptyStringForANonAsciiPattern)
{
    MacStandIns::SetShortPatterns("d\xC3\xA9", "h:mm\xE2\x80\xAF"
                                               "a");

    EXPECT_EQ(ReadShortDatePattern(), L"");
    EXPECT_EQ(ReadShortTimePattern(), L"");
}

TEST(LocalePatternsMacTest, ReturnsAnEmptyStringForAPatternOver255Characters)
{
    MacStandIns::SetShortPatterns(std::string(255, 'd'), std::string(256, 'h'));

    EXPECT_EQ(ReadShortDatePattern(), std::wstring(255, L'd'));
    EXPECT_EQ(ReadShortTimePattern(), L"");
}

TEST(LocalePatternsMacTest, ReleasesEveryObjectThatItCreates)
{
    MacStandIns::SetShortPatterns("M/d/yy", "h:mm a");

    ReadShortDatePattern();
    ReadShortTimePattern();

    EXPECT_EQ(MacStandIns::CountObjects(), 0);
}

} // namespace
} // namespace Toolkit
