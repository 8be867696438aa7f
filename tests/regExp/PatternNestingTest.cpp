#include "toolkit/regExp/PatternNesting.Private.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>

namespace Toolkit {
namespace {

TEST(PatternNestingTest, CountsLevelsInsteadOfParentheses)
{
    constexpr std::pair<const char*, std::size_t> cases[] = {
        {"", 0},          {"a", 0},          {"(a)", 1},        {"(a)(b)(c)", 1},
        {"((a)(b))", 2},  {"(a(b(c)))", 3},  {"(?:a)(?=b)", 1}, {"\\(\\(a", 0},
        {"[(][(](a)", 1}, {"[](](a)(b)", 1}, {"[^](](a)", 1},   {"[[:alpha:](](a)", 1},
        {"[\\](](a)", 1}, {"(", 1},          {")(a)", 1},       {"((((", 4},
        {"(a)\\)(b)", 1}, {"(a)[)](b)", 1},  {"(a)[[)](b)", 1}};
    for (const auto& [pattern, expected] : cases)
        EXPECT_EQ(MeasureNesting(pattern), expected) << pattern;
}

TEST(PatternNestingTest, CountsAThousandGroupsInARowAsOneLevel)
{
    std::string pattern;
    for (int i = 0; i < 1000; ++i)
        pattern += "([a-z]+)";

    EXPECT_EQ(MeasureNesting(pattern.c_str()), 1u);
}

TEST(PatternNestingTest, CountsAllOpeningParenthesesWhereAClosingOneIsUncertain)
{
    for (const char* pattern :
         {"(?x)((# )\n(((", "\\Q)))\\E(((((", "\\c)(((((", "[\\Q]\\E)))((((( ", "(*MARK:[)(((((",
          "[[.a.])))(((((", "(?#)(((((", "[a(((((", "((\\E)))((((("})
        EXPECT_GE(MeasureNesting(pattern), 5u) << pattern;
}

} // namespace
} // namespace Toolkit
