#include "toolkit/system/LocalePatterns.Private.h"

#include <gtest/gtest.h>

#include <string>

#include "mac/CoreFoundationStandIn.h"

namespace Toolkit {
namespace {

TEST(LocalePatternsMacTest, GivesTheShortPatternsOfTheLocale)
{
    MacStandIns::SetShortPatterns("M/d/yy", "h:mm a");

    EXPECT_EQ(LocalePatterns::ShortDate(), L"M/d/yy");
    EXPECT_EQ(LocalePatterns::ShortTime(), L"h:mm a");
}

TEST(LocalePatternsMacTest, GivesAnEmptyPatternForOneOutsideAscii)
{
    MacStandIns::SetShortPatterns("d\xC3\xA9", "h:mm\xE2\x80\xAF"
                                               "a");

    EXPECT_EQ(LocalePatterns::ShortDate(), L"");
    EXPECT_EQ(LocalePatterns::ShortTime(), L"");
}

TEST(LocalePatternsMacTest, GivesAnEmptyPatternForOneOfMoreThan255Characters)
{
    MacStandIns::SetShortPatterns(std::string(255, 'd'), std::string(256, 'h'));

    EXPECT_EQ(LocalePatterns::ShortDate(), std::wstring(255, L'd'));
    EXPECT_EQ(LocalePatterns::ShortTime(), L"");
}

TEST(LocalePatternsMacTest, ReleasesWhatItCreates)
{
    MacStandIns::SetShortPatterns("M/d/yy", "h:mm a");

    LocalePatterns::ShortDate();
    LocalePatterns::ShortTime();

    EXPECT_EQ(MacStandIns::CountObjects(), 0);
}

} // namespace
} // namespace Toolkit
