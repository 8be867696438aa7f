#include "toolkit/regExp/MatchResult.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace Toolkit {
namespace {

// Returns a result with `resultCode`, as a search leaves it.
smart_ptr<MatchResult> ResultWithCode(int resultCode)
{
    smart_ptr<MatchResult> result(new MatchResult());
    result->resultCode = resultCode;
    return result;
}

TEST(MatchResultTest, IsEmptyAfterConstruction)
{
    const MatchResult result;

    EXPECT_EQ(result.errorText, nullptr);
    EXPECT_EQ(result.errorOffset, 0);
    EXPECT_EQ(result.code, nullptr);
    EXPECT_EQ(result.subject, "");
    EXPECT_EQ(result.pattern, "");
    EXPECT_EQ(result.execOptions, 0);
    EXPECT_EQ(result.Count(), 0u);
}

TEST(MatchResultTest, HasRoomForTwentyPairsOfOffsets)
{
    const MatchResult result;

    EXPECT_EQ(result.ovectorSize, 60);
    EXPECT_EQ(sizeof(result.ovector), 60 * sizeof(int));
}

TEST(MatchResultTest, IsACollectionOfGroups)
{
    const smart_ptr<MatchResult> result = ResultWithCode(1);

    result->Add(smart_ptr<Group>(new Group("all", 0)));
    result->AddNamedGroupKey("name", 0);

    EXPECT_EQ((*result)[0]->value, "all");
    EXPECT_EQ(result->GetGroup("name")->value, "all");
}

TEST(MatchResultTest, SucceedsForEveryNonNegativeCode)
{
    constexpr std::pair<int, bool> cases[] = {{0, true},   {1, true},   {20, true},
                                              {-1, false}, {-2, false}, {-21, false}};
    for (const auto& [resultCode, expected] : cases) {
        SCOPED_TRACE(resultCode);
        EXPECT_EQ(ResultWithCode(resultCode)->Success(), expected);
    }
}

TEST(MatchResultTest, FailsForAPatternThatDidNotCompile)
{
    const smart_ptr<MatchResult> result = ResultWithCode(1);
    result->errorText = "missing )";

    EXPECT_FALSE(result->Success());
}

TEST(MatchResultTest, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<MatchResult>);
    EXPECT_FALSE(std::is_copy_assignable_v<MatchResult>);
}

} // namespace
} // namespace Toolkit
