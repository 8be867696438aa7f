#include "toolkit/regExp/RegExp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "regExp/CaughtException.h"

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::Pair;
using TestSupport::CaughtMessage;

using Strings = std::vector<TString<char>>;
using Map = RegExp::ReplacementMappedStrings;

TString<char> ReplaceAll(const TString<char>& pattern, const TString<char>& replacement,
                         const TString<char>& subject)
{
    return RegExp(pattern, RegExpOptions::None).Replace(replacement, subject, 0);
}

TString<char> ReplaceGroups(const TString<char>& pattern, const Strings& replacements,
                            const TString<char>& subject)
{
    return RegExp(pattern, RegExpOptions::None).Replace(replacements, subject);
}

TString<char> ReplaceNamed(const TString<char>& pattern, Map& replacements,
                           const TString<char>& subject)
{
    return RegExp(pattern, RegExpOptions::None).Replace(replacements, subject);
}

struct Case {
    const char* pattern;
    const char* replacement;
    const char* subject;
    const char* expected;
};

void ExpectReplacements(std::initializer_list<Case> cases)
{
    for (const auto& [pattern, replacement, subject, expected] : cases) {
        SCOPED_TRACE(std::string(pattern) + " in " + subject);
        EXPECT_EQ(ReplaceAll(pattern, replacement, subject), expected);
    }
}

TEST(RegExpReplaceTest, ReplacesEveryMatch)
{
    ExpectReplacements({{"a", "x", "aaa", "xxx"},
                        {"a+", "x", "aa b a", "x b x"},
                        {"[0-9]+", "#", "1, 22 and 333", "#, # and #"},
                        {"a", "", "banana", "bnn"},
                        {"b", "x", "aaa", "aaa"},
                        {"a", "x", "", ""},
                        {"\xC3\xA9", "e", "\xC3\xA9t\xC3\xA9", "ete"},
                        {"t", "\xC3\xA9", "tat",
                         "\xC3\xA9"
                         "a"
                         "\xC3\xA9"}});
}

TEST(RegExpReplaceTest, DoesNotReplaceAReplacement)
{
    ExpectReplacements({{"a", "aa", "aaa", "aaaaaa"}, {"ab", "b", "aab", "ab"}});
}

TEST(RegExpReplaceTest, InsertsTheReplacementLiterally)
{
    ExpectReplacements({{"(a)", "$1\\1\\0$&", "a", "$1\\1\\0$&"}});
}

TEST(RegExpReplaceTest, NeverMatchesAnEmptyString)
{
    ExpectReplacements({{"a*", "x", "aaa", "x"},
                        {"a*", "x", "baab", "bxb"},
                        {"", "x", "abc", "abc"},
                        {"\\b", "x", "abc", "abc"},
                        {"a*?", "x", "aa", "xx"}});
}

TEST(RegExpReplaceTest, DoesNotMatchLineAnchorsAtTheEdgesOfTheSubject)
{
    ExpectReplacements({{"^a", "x", "aaa", "aaa"},
                        {"a$", "x", "aaa", "aaa"},
                        {"(?m)^a", "x", "a\na\na", "a\nx\nx"},
                        {"(?m)a$", "x", "a\na\na", "x\nx\na"},
                        {"\\Aa", "x", "aaa", "xaa"},
                        {"a\\z", "x", "aaa", "aax"}});
}

TEST(RegExpReplaceTest, MatchesBackslashGWhereTheSearchContinues)
{
    ExpectReplacements({{"\\Ga", "x", "aaba", "xxba"}, {"\\G[ab]", "xy", "abca", "xyxyca"}});
}

TEST(RegExpReplaceTest, LooksBehindIntoReplacements)
{
    ExpectReplacements({{"(?<=b)a", "b", "baaac", "bbbbc"},
                        {"(?<!x)a", "x", "aaaa", "xaxa"},
                        {"\\ba", "x", "aa a", "xa x"},
                        {"\\ba", "-", "aaa", "---"},
                        {"[[:<:]]a", "-", "aaa", "---"},
                        {"a|[[:>:]] ", "-", "a ", "- "},
                        {"\\Ba", "-", "aaaa", "a-a-"},
                        {"\\Aa", "", "aaa", ""},
                        {"(?m)^a", "\n", "\naaa", "\n\n\n\n"},
                        {"a\\Kb", "a", "abb", "aab"},
                        {"\\Qa\\E(?<=a)", "b", "aa", "bb"}});
}

TEST(RegExpReplaceTest, ThrowsWhenSearchingAfterAnInvalidReplacement)
{
    EXPECT_EQ(CaughtMessage([] { ReplaceAll("a", "\xFF", "aaa"); }),
              "-10Exp::Match return error: ");
    EXPECT_EQ(ReplaceAll("b", "\xFF", "aaa"), "aaa");
}

TEST(RegExpReplaceTest, ThrowsWhenASearchWouldContinueInsideACharacter)
{
    // After the first byte is replaced the string is valid UTF-8 again, but the search would
    // continue inside a character.
    EXPECT_EQ(CaughtMessage([] { ReplaceAll("\\C", "\xC3", "\xC3\xA9"); }),
              "-11Exp::Match return error: ");
    EXPECT_EQ(ReplaceAll("\\C\\C", "e", "\xC3\xA9"), "e");
}

TEST(RegExpReplaceTest, RemovesNothingForAMatchThatEndsBeforeItBegins)
{
    ExpectReplacements({{"(?=ab\\K)", "x", "abc", "abxc"}});
}

TEST(RegExpReplaceTest, LeavesTheSubjectUnchangedForTooManyGroups)
{
    std::string pattern;
    for (int i = 0; i < 20; ++i)
        pattern += "(a)";

    const TString<char> subject = std::string(45, 'a');
    Map map;
    EXPECT_EQ(ReplaceAll(pattern, "x", subject), subject);
    EXPECT_EQ(ReplaceGroups(pattern, Strings(20, "x"), subject), subject);
    EXPECT_EQ(ReplaceNamed(pattern, map, subject), subject);
}

TEST(RegExpReplaceTest, IgnoresTheFlag)
{
    RegExp regExp(TString<char>("a"), RegExpOptions::None);

    for (const unsigned char flag : std::initializer_list<unsigned char>{0, 1, 0xFF})
        EXPECT_EQ(regExp.Replace("x", "aa", flag), "xx");
}

TEST(RegExpReplaceTest, ReplacesInALongSubjectIfTheReplacementDoesNotMatch)
{
    const std::string line = std::string(9, '.') + "a";
    std::string subject;
    std::string expected;
    for (int i = 0; i < 8000; ++i) {
        subject += line;
        expected += std::string(9, '.') + "bc";
    }

    EXPECT_EQ(ReplaceAll("a", "bc", subject), expected);
}

TEST(RegExpReplaceTest, ReplacesAllMatchesWhenTheOffsetWrapsAround)
{
    const TString<char> subject = std::string(65534, '.') + "a" + std::string(10, '.') + "a";

    EXPECT_EQ(ReplaceAll("a", "bb", subject),
              std::string(65534, '.') + "bb" + std::string(10, '.') + "bb");
}

TEST(RegExpReplaceTest, CanReplaceAReplacementWhenTheOffsetWrapsAround)
{
    EXPECT_EQ(ReplaceAll("ab", "b", std::string(65534, '.') + "aab"),
              std::string(65534, '.') + "b");
    // Removes dot by dot until the search continues at an offset that fits into 16 bits.
    EXPECT_EQ(ReplaceAll("\\.a", "a", std::string(65540, '.') + "a"),
              std::string(65534, '.') + "a");
}

TEST(RegExpReplaceTest, ThrowsWhenTheOffsetWrapsIntoACharacter)
{
    std::string subject;
    for (int i = 0; i < 32769; ++i)
        subject += "\xC3\xA9";

    EXPECT_EQ(CaughtMessage([&] { ReplaceAll("a", "bbb", subject + "a"); }),
              "-11Exp::Match return error: ");
}

TEST(RegExpReplaceTest, ReplacesGroupsWithTheEntriesOfAList)
{
    EXPECT_EQ(ReplaceGroups("(a+)-(b+)", {"1", "22"}, "x aaa-b y aaa-b"), "x 1-22 y aaa-b");
    EXPECT_EQ(ReplaceGroups("(a)(b)(c)", {"", "bb", "$1"}, "abc"), "bb$1");
}

TEST(RegExpReplaceTest, ReturnsAnEmptyStringForAListIfNothingMatches)
{
    EXPECT_EQ(ReplaceGroups("(a)", {"x"}, "bbb"), "");
}

TEST(RegExpReplaceTest, LeavesTheSubjectUnchangedForAPatternWithoutGroups)
{
    EXPECT_EQ(ReplaceGroups("a", {"x"}, "abc"), "abc");
}

TEST(RegExpReplaceTest, TreatsMissingEntriesAsEmpty)
{
    EXPECT_EQ(ReplaceGroups("(a)(b)(c)", {"x"}, "-abc-"), "-x-");
    EXPECT_EQ(ReplaceGroups("(a)(b)(c)", {}, "-abc-"), "--");
}

TEST(RegExpReplaceTest, SkipsAnUnusedGroup)
{
    Map map{{"b", "y"}};

    EXPECT_EQ(ReplaceGroups("(a)?(b)", {"x", "y"}, "-b-"), "-y-");
    EXPECT_EQ(ReplaceNamed("(?<a>a)?(?<b>b)", map, "-b-"), "-y-");
    EXPECT_THAT(map, ElementsAre(Pair("a", ""), Pair("b", "y")));
}

TEST(RegExpReplaceTest, ShiftsANestedGroupWithTheOuterGroup)
{
    EXPECT_EQ(ReplaceGroups("((a)b)", {"xyz", "q"}, "ab-"), "xqz-");
    // Group 2 would begin after the end, or before the beginning, of the remaining text.
    EXPECT_EQ(ReplaceGroups("(..(.))", {"", "q"}, "abc"), "");
    EXPECT_EQ(ReplaceGroups("(...)(?<=(a)..)", {"", "q"}, "abc"), "");
}

TEST(RegExpReplaceTest, ReplacesNamedGroupsWithTheEntriesOfAMap)
{
    Map map{{"user", "bob"}, {"host", "work"}, {"unused", "x"}};

    EXPECT_EQ(ReplaceNamed("(?<user>\\w+)(@)(?<host>\\w+)", map, "to ann@home, ann@home"),
              "to bob@work, ann@home");
    EXPECT_EQ(map.size(), 3u);
}

TEST(RegExpReplaceTest, AddsAMissingNameToTheMap)
{
    Map map{{"b", "x"}};

    EXPECT_EQ(ReplaceNamed("(?<a>a)(?<b>b)", map, "-ab-"), "-x-");
    EXPECT_THAT(map, ElementsAre(Pair("a", ""), Pair("b", "x")));
}

TEST(RegExpReplaceTest, ReturnsAnEmptyStringAndKeepsTheMapIfNothingMatches)
{
    Map map;

    EXPECT_EQ(ReplaceNamed("(?<a>a)", map, "bbb"), "");
    EXPECT_TRUE(map.empty());
}

TEST(RegExpReplaceTest, OrdersAMapByTheBytesOfItsNames)
{
    const Map map{{"b", ""}, {"\xC3\xA9", ""}, {"B", ""}};

    EXPECT_THAT(map, ElementsAre(Pair("B", ""), Pair("b", ""), Pair("\xC3\xA9", "")));
}

TEST(RegExpReplaceTest, DoesNotReplaceAnInvalidRange)
{
    RegExp regExp(TString<char>("(b)|(x)"), RegExpOptions::None);
    const smart_ptr<MatchResult> result = regExp.Match("abc");
    for (const auto& [group, shift] : std::initializer_list<std::pair<int, int>>{
             {2, 0}, {-1, 0}, {20, 0}, {1000000, 0}, {1, -2}, {1, 3}, {1, -2147483647}}) {
        SCOPED_TRACE(std::to_string(group) + " " + std::to_string(shift));
        TString<char> target = "abc";
        regExp.RegExp_replace(result, group, target, "yy", shift);
        EXPECT_EQ(target, "abc");
    }
}

TEST(RegExpReplaceTest, ShiftsTheRangeToReplace)
{
    RegExp regExp(TString<char>("b"), RegExpOptions::None);
    const smart_ptr<MatchResult> result = regExp.Match("abc");
    constexpr std::pair<int, const char*> cases[] = {
        {0, "ayyc"}, {-1, "yybc"}, {1, "abyy"}, {2, "abcyy"}};
    for (const auto& [shift, expected] : cases) {
        SCOPED_TRACE(shift);
        TString<char> target = "abc";
        regExp.RegExp_replace(result, 0, target, "yy", shift);
        EXPECT_EQ(target, expected);
    }
}

} // namespace
} // namespace Toolkit
