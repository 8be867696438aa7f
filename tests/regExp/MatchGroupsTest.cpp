#include "toolkit/regExp/MatchGroups.Private.h"
#include "toolkit/regExp/PatternEngine.Private.h"

#include <gtest/gtest.h>

#include "regExp/CaughtException.h"

namespace Toolkit {
namespace {

TEST(MatchGroupsTest, ReturnsAValidRangeOnlyForAUsedGroup)
{
    MatchResult result;
    result.ovector[4] = 3;
    result.ovector[5] = 7;

    EXPECT_TRUE(GetGroupRange(result, 2).IsValid());
    EXPECT_EQ(GetGroupRange(result, 2).Length(), 4u);
    for (const int number : {0, 1, 19, 20, 1000, -1, -2147483647})
        EXPECT_FALSE(GetGroupRange(result, number).IsValid()) << number;
}

TEST(MatchGroupsTest, TreatsAnInvertedRangeAsEmpty)
{
    EXPECT_EQ((GroupRange{5, 3}.Length()), 0u);
    EXPECT_TRUE((GroupRange{5, 3}.IsValid()));
}

TEST(MatchGroupsTest, ReadsNoGroupsWithoutAMatch)
{
    for (const int resultCode : {0, -1, -2}) {
        MatchResult result;
        result.resultCode = resultCode;
        ReadGroups(result);
        EXPECT_EQ(result.Count(), 0u);
    }
}

TEST(MatchGroupsTest, ThrowsWhenTheEngineCannotReportNames)
{
    MatchResult neverCompiled;
    neverCompiled.resultCode = 1;

    EXPECT_EQ(TestSupport::CaughtMessage([&] { ReadGroups(neverCompiled); }),
              "pcre_fullinfo 'PCRE_INFO_NAMECOUNT' return error");
}

TEST(MatchGroupsTest, FailsToReadNamesWithoutACompiledPattern)
{
    int number = 0;
    const unsigned char* table = nullptr;

    EXPECT_LT(Pcre::GetNameCount(nullptr, number), 0);
    EXPECT_LT(Pcre::GetNameEntrySize(nullptr, number), 0);
    EXPECT_LT(Pcre::GetNameTable(nullptr, table), 0);
}

} // namespace
} // namespace Toolkit
