#include "toolkit/regExp/AtomicRecursion.Private.h"

#include <gtest/gtest.h>

#include <utility>

namespace Toolkit {
namespace {

TEST(AtomicRecursionTest, MakesSubroutineCallsAtomic)
{
    constexpr std::pair<const char*, const char*> cases[] = {
        {"(a(?1)?b)", "(a(?>(?1))?b)"},
        {"(?R)", "(?>(?R))"},
        {"a(?0)*", "a(?>(?0))*"},
        {"(?+1)(a)", "(?>(?+1))(a)"},
        {"(a)(?-1)", "(a)(?>(?-1))"},
        {"(?<n>a)(?&n)", "(?<n>a)(?>(?&n))"},
        {"(?<n>a)(?P>n)", "(?<n>a)(?>(?P>n))"},
        {"(?<n>a)\\g<n>", "(?<n>a)(?>\\g<n>)"},
        {"(a)\\g'1'", "(a)(?>\\g'1')"},
        {"\\[(?:[^][]+|(?R))*\\]", "\\[(?:[^][]+|(?>(?R)))*\\]"},
        {"(?x: # (?1)\n (a)(?1))", "(?x: # (?1)\n (a)(?>(?1)))"}};
    for (const auto& [pattern, expected] : cases)
        EXPECT_EQ(MakeRecursionAtomic(pattern), expected);
}

TEST(AtomicRecursionTest, MakesGroupsThatReferToThemselvesAtomic)
{
    constexpr std::pair<const char*, const char*> cases[] = {
        {"(a|b\\1)+", "(?>(a|b\\1))+"},
        {"(?<n>a|\\k<n>b)", "(?>(?<n>a|\\k<n>b))"},
        {"(?'n'a|(?P=n)b)", "(?>(?'n'a|(?P=n)b))"},
        {"(a)(b|\\g{-1}c)", "(a)(?>(b|\\g{-1}c))"},
        {"(?|(a\\1)|(b\\1))", "(?|(?>(a\\1))|(?>(b\\1)))"}};
    for (const auto& [pattern, expected] : cases)
        EXPECT_EQ(MakeRecursionAtomic(pattern), expected);
}

TEST(AtomicRecursionTest, LeavesOtherPatternsUnchanged)
{
    for (const char* pattern :
         {"", "a", "(a)(b)\\1", "(?<n>a)\\k<n>", "(?i)a(?-i)b", "(?-x:a)", "(?(1)a|b)",
          "(a)?(?(R)b)", "(?(R1)a)", "\\Q(?1)\\E", "[(?1)]", "\\(?1", "(?#(?1)a", "(*MARK:(?1)a",
          "(?P<n>a)", "(?:a\\2)(b)(c)", "(?(?=a)b|c)"})
        EXPECT_EQ(MakeRecursionAtomic(pattern), pattern);
}

} // namespace
} // namespace Toolkit
