#include "toolkit/regExp/RegExp.h"

#include "support/OutOfMemory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "regExp/CaughtException.h"

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::Pair;
using TestSupport::CaughtMessage;

RegExp Pattern(const TString<char>& pattern)
{
    return RegExp(pattern, RegExpOptions::None);
}

// Returns the values of all groups, in order.
std::vector<std::string> Values(const smart_ptr<MatchResult>& result)
{
    std::vector<std::string> values;
    for (const smart_ptr<Group>& group : result->groups)
        values.push_back(group->value);
    return values;
}

// Returns a pattern of `count` groups, each of which matches an "a".
TString<char> PatternWithGroups(int count)
{
    std::string pattern;
    for (int i = 0; i < count; ++i)
        pattern += "(a)";
    return pattern;
}

TEST(RegExpTest, FindsThePatternAnywhereInTheSubject)
{
    constexpr std::tuple<const char*, const char*, bool> cases[] = {
        {"b", "abc", true},       {"^b", "abc", false},      {"c$", "abc", true},
        {"", "", true},           {"", "abc", true},         {"x*", "abc", true},
        {"x", "", false},         {"A", "a", false},         {"(?i)A", "a", true},
        {"a.c", "a\nc", false},   {"(?s)a.c", "a\nc", true}, {"^c", "b\nc", false},
        {"(?m)^c", "b\nc", true}, {"c$", "c\n", true},       {"(?x) a b ", "ab", true}};
    for (const auto& [pattern, subject, expected] : cases) {
        SCOPED_TRACE(std::string(pattern) + " in " + subject);
        EXPECT_EQ(Pattern(pattern).IsMatch(subject), expected);
    }
}

TEST(RegExpTest, TreatsACodePointAsACharacter)
{
    EXPECT_TRUE(Pattern("^.$").IsMatch("\xC3\xA9"));
    EXPECT_TRUE(Pattern("^.$").IsMatch("\xF0\x9F\x98\x80"));
    EXPECT_TRUE(Pattern("^[\xC3\xA8-\xC3\xAA]$").IsMatch("\xC3\xA9"));
    EXPECT_FALSE(Pattern("^..$").IsMatch("\xC3\xA9"));
}

TEST(RegExpTest, MatchesWideStringsAsUtf8)
{
    const RegExp regExp(TString<wchar_t>(L"(\u00E9+)(\U0001F600)"), RegExpOptions::None);

    EXPECT_TRUE(regExp.IsMatch(L"x\u00E9\u00E9\U0001F600"));
    EXPECT_FALSE(regExp.IsMatch(L"x\u00E9\u00E9"));
    EXPECT_THAT(Values(regExp.Match(L"x\u00E9\U0001F600")),
                ElementsAre("\xC3\xA9\xF0\x9F\x98\x80", "\xC3\xA9", "\xF0\x9F\x98\x80"));
}

TEST(RegExpTest, TreatsAWideStringThatCannotBeConvertedAsEmpty)
{
    const TString<wchar_t> invalid(std::wstring(1, static_cast<wchar_t>(0x110000)));

    EXPECT_TRUE(Pattern("^$").IsMatch(invalid));
    EXPECT_TRUE(RegExp(invalid, RegExpOptions::None).IsMatch("anything"));
}

TEST(RegExpTest, ThrowsWhenOutOfMemoryForAWideString)
{
    const TString<wchar_t> wide = std::wstring(1000000, L'a');
    const RegExp regExp = Pattern("b?");
    const TString<char> expected = "-6gExp::Match return error: ";
    const auto messageOf = [](const auto& operation) {
        const TestSupport::AllocationLimit limit(100000);
        return CaughtMessage(operation);
    };

    EXPECT_EQ(messageOf([&] { regExp.IsMatch(wide); }), expected);
    EXPECT_EQ(messageOf([&] { regExp.Match(wide); }), expected);
    EXPECT_EQ(messageOf([&] { RegExp(wide, RegExpOptions::None); }), expected);
}

TEST(RegExpTest, IgnoresModifiers)
{
    for (const int bits : {0, 1, 2, 4, 8, 15}) {
        SCOPED_TRACE(bits);
        const auto modifiers = static_cast<RegExpOptions::Modifiers>(bits);
        EXPECT_FALSE(RegExp(TString<char>("A"), modifiers).IsMatch("a"));
        EXPECT_FALSE(RegExp(TString<char>("^b"), modifiers).IsMatch("a\nb"));
        EXPECT_FALSE(RegExp(TString<char>("a.b"), modifiers).IsMatch("a\nb"));
        EXPECT_FALSE(RegExp(TString<char>("a b"), modifiers).IsMatch("ab"));
    }
}

TEST(RegExpTest, CompilesPatternsWithNoOptionButUtf8)
{
    const RegExp duplicateNames = Pattern("(?<n>a)(?<n>b)");

    EXPECT_THAT(CaughtMessage([&] { duplicateNames.IsMatch("ab"); }),
                testing::HasSubstr("two named subpatterns have the same name"));
    EXPECT_FALSE(Pattern("\\w").IsMatch("\xC3\xA9"));
    EXPECT_THAT(Values(Pattern("(a+)").Match("aa")), ElementsAre("aa", "aa"));
}

TEST(RegExpTest, EndsThePatternAtItsFirstNullCharacter)
{
    const TString<char> pattern(std::string("a\0(", 3));

    EXPECT_TRUE(Pattern(pattern).IsMatch("a"));
    EXPECT_EQ(Pattern(pattern).Match("a")->pattern, pattern);
}

TEST(RegExpTest, SearchesASubjectBeyondANullCharacter)
{
    const TString<char> subject(std::string("a\0b", 3));

    EXPECT_TRUE(Pattern("b").IsMatch(subject));
    EXPECT_THAT(Values(Pattern("a.b").Match(subject)), ElementsAre(std::string("a\0b", 3)));
}

TEST(RegExpTest, ReturnsTheFirstMatchAndItsGroups)
{
    const smart_ptr<MatchResult> result = Pattern("(\\w+)@(\\w+)").Match("to: ann@home, bob@work");

    EXPECT_TRUE(result->Success());
    EXPECT_EQ(result->resultCode, 3);
    EXPECT_THAT(Values(result), ElementsAre("ann@home", "ann", "home"));
    EXPECT_EQ((*result)[2]->index, 2);
}

TEST(RegExpTest, StoresPatternSubjectCodeAndOffsetsOfAMatch)
{
    const smart_ptr<MatchResult> result = Pattern("b(c)").Match("abc");

    EXPECT_EQ(result->pattern, "b(c)");
    EXPECT_EQ(result->subject, "abc");
    EXPECT_NE(result->code, nullptr);
    EXPECT_EQ(result->errorText, nullptr);
    EXPECT_EQ(result->execOptions, 0);
    EXPECT_EQ(result->ovector[0], 1);
    EXPECT_EQ(result->ovector[1], 3);
    EXPECT_EQ(result->ovector[2], 2);
    EXPECT_EQ(result->ovector[3], 3);
}

TEST(RegExpTest, ReturnsNoGroupsWithoutAMatch)
{
    const smart_ptr<MatchResult> result = Pattern("(?<name>x)").Match("abc");

    ASSERT_TRUE(result.IsValid());
    EXPECT_FALSE(result->Success());
    EXPECT_EQ(result->resultCode, -1);
    EXPECT_EQ(result->Count(), 0u);
    EXPECT_TRUE(result->names.empty());
}

TEST(RegExpTest, ReturnsAnEmptyValueForAnUnusedGroup)
{
    const smart_ptr<MatchResult> result = Pattern("(a)|(b)|(c)").Match("b");

    // The third group follows the last one that took part, so it is not reported.
    EXPECT_THAT(Values(result), ElementsAre("b", "", "b"));
    EXPECT_EQ(result->ovector[2], -1);
    EXPECT_EQ(result->ovector[3], -1);
}

TEST(RegExpTest, FindsGroupsByTheirNames)
{
    const smart_ptr<MatchResult> result =
        Pattern("(?<year>\\d+)-(\\d+)-(?P<day>\\d+)").Match("on 2009-03-05");

    EXPECT_THAT(result->names, ElementsAre(Pair("day", 3), Pair("year", 1)));
    EXPECT_EQ(result->GetGroup("year")->value, "2009");
    EXPECT_EQ((*result)[3]->name, "day");
    EXPECT_EQ((*result)[2]->name, "");
}

TEST(RegExpTest, OmitsNamesOfGroupsThatAreNotReported)
{
    const smart_ptr<MatchResult> result = Pattern("(?<first>a)|(?<second>b)").Match("a");

    EXPECT_THAT(result->names, ElementsAre(Pair("first", 1)));
    EXPECT_FALSE(result->GetGroup("second").IsValid());
}

TEST(RegExpTest, NamesAnUnusedGroupBeforeAUsedOne)
{
    const smart_ptr<MatchResult> result = Pattern("(?<first>a)|(?<second>b)").Match("b");

    EXPECT_THAT(result->names, ElementsAre(Pair("first", 1), Pair("second", 2)));
    EXPECT_EQ(result->GetGroup("first")->value, "");
}

TEST(RegExpTest, AcceptsTwoGroupsWithTheSameName)
{
    const smart_ptr<MatchResult> result = Pattern("(?J)(?<n>a)(?<n>b)").Match("ab");

    EXPECT_THAT(result->names, ElementsAre(Pair("n", 1)));
    EXPECT_EQ((*result)[1]->name, "n");
    EXPECT_EQ((*result)[2]->name, "n");
}

TEST(RegExpTest, ReportsNineteenGroups)
{
    const RegExp regExp = Pattern(PatternWithGroups(19));
    const TString<char> subject = std::string(19, 'a');

    EXPECT_TRUE(regExp.IsMatch(subject));
    EXPECT_EQ(regExp.Match(subject)->resultCode, 20);
    EXPECT_EQ(regExp.Match(subject)->Count(), 20u);
}

TEST(RegExpTest, ReturnsSuccessWithoutGroupsForTwentyGroups)
{
    const RegExp regExp = Pattern(PatternWithGroups(20));
    const TString<char> subject = std::string(20, 'a');

    const smart_ptr<MatchResult> result = regExp.Match(subject);
    EXPECT_FALSE(regExp.IsMatch(subject));
    EXPECT_EQ(result->resultCode, 0);
    EXPECT_TRUE(result->Success());
    EXPECT_EQ(result->Count(), 0u);
}

TEST(RegExpTest, ReturnsAnEmptyValueForAMatchThatEndsBeforeItBegins)
{
    const smart_ptr<MatchResult> result = Pattern("(?=ab\\K)").Match("abc");

    EXPECT_EQ(result->ovector[0], 2);
    EXPECT_EQ(result->ovector[1], 0);
    EXPECT_THAT(Values(result), ElementsAre(""));
}

TEST(RegExpTest, ThrowsWhenASearchTakesTooManySteps)
{
    const RegExp regExp = Pattern("(a+)+$");

    EXPECT_EQ(CaughtMessage([&] { regExp.IsMatch(std::string(30, 'a') + "b"); }),
              "-8gExp::Match return error: ");
}

TEST(RegExpTest, ReplacesTheCompiledPatternOfAResult)
{
    const RegExp regExp = Pattern("unused");
    const smart_ptr<MatchResult> result(new MatchResult());
    result->subject = "abc";

    result->pattern = "a";
    regExp.RegExp_compile(result);
    result->pattern = "(b)(c)";
    regExp.RegExp_compile(result);
    regExp.RegExp_exec(result, 0);

    EXPECT_EQ(result->resultCode, 3);
}

TEST(RegExpTest, ForgetsTheGroupsOfAnEarlierPattern)
{
    const RegExp regExp = Pattern("unused");
    const smart_ptr<MatchResult> result(new MatchResult());
    result->subject = "ab";
    result->pattern = "(a)(b)";
    regExp.RegExp_compile(result);
    regExp.RegExp_exec(result, 0);

    result->pattern = "b";
    regExp.RegExp_compile(result);
    regExp.RegExp_exec(result, 0);

    EXPECT_EQ(result->resultCode, 1);
    EXPECT_EQ(result->ovector[2], -1);
    EXPECT_EQ(result->ovector[4], -1);
}

TEST(RegExpTest, StoresAnErrorAndNoCodeWhenCompilingFails)
{
    const RegExp regExp = Pattern("unused");
    const smart_ptr<MatchResult> result(new MatchResult());
    result->pattern = "a";
    regExp.RegExp_compile(result);
    result->pattern = "a[";

    EXPECT_THROW(regExp.RegExp_compile(result), smart_ptr<RegExpException>);

    EXPECT_EQ(result->code, nullptr);
    EXPECT_STREQ(result->errorText, "missing terminating ] for character class");
    EXPECT_EQ(result->errorOffset, 2);
    EXPECT_FALSE(result->Success());
}

TEST(RegExpTest, RemovesAnEarlierErrorWhenCompilingSucceeds)
{
    const RegExp regExp = Pattern("unused");
    const smart_ptr<MatchResult> result(new MatchResult());
    result->subject = "a";
    result->pattern = "a[";
    EXPECT_THROW(regExp.RegExp_compile(result), smart_ptr<RegExpException>);
    result->pattern = "a";

    regExp.RegExp_compile(result);
    regExp.RegExp_exec(result, 0);

    EXPECT_EQ(result->errorText, nullptr);
    EXPECT_EQ(result->errorOffset, 0);
    EXPECT_TRUE(result->Success());
}

TEST(RegExpTest, StartsAtTheOffsetAndLooksBehindIt)
{
    const RegExp regExp = Pattern("unused");
    const smart_ptr<MatchResult> result(new MatchResult());
    result->subject = "ab ab";
    result->pattern = "(?<=a)b";
    regExp.RegExp_compile(result);

    regExp.RegExp_exec(result, 1);
    EXPECT_EQ(result->ovector[0], 1);
    regExp.RegExp_exec(result, 2);
    EXPECT_EQ(result->ovector[0], 4);
    regExp.RegExp_exec(result, 5);
    EXPECT_EQ(result->resultCode, -1);
}

TEST(RegExpTest, StoresTheErrorCodeOfAFailedSearch)
{
    const RegExp regExp = Pattern("unused");
    const smart_ptr<MatchResult> result(new MatchResult());
    result->subject = "a";
    result->pattern = "a";
    regExp.RegExp_compile(result);

    EXPECT_EQ(CaughtMessage([&] { regExp.RegExp_exec(result, 2); }),
              "-24Exp::Match return error: ");
    EXPECT_EQ(result->resultCode, -24);
}

TEST(RegExpTest, CreatesIndependentCopies)
{
    RegExp original = Pattern("a");
    const RegExp copy = original;
    original = Pattern("b");

    EXPECT_TRUE(copy.IsMatch("a"));
    EXPECT_FALSE(original.IsMatch("a"));
}

TEST(RegExpTest, CanBeUsedBySeveralThreadsAtOnce)
{
    const RegExp regExp = Pattern("(?<word>[a-z]+)(\\d+)");
    std::vector<std::thread> threads;
    std::vector<int> correctMatches(4, 0);
    for (int& count : correctMatches) {
        threads.emplace_back([&regExp, &count] {
            for (int i = 0; i < 500; ++i) {
                const auto result = regExp.Match("x" + std::to_string(i));
                count += result->GetGroup("word")->value == "x" &&
                         (*result)[2]->value == std::to_string(i);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_THAT(correctMatches, ElementsAre(500, 500, 500, 500));
}

TEST(RegExpVersionTest, NamesTheEngineAndItsVersion)
{
    EXPECT_TRUE(
        RegExp("^PCRE2? \\d+\\.\\d+", RegExpOptions::None).IsMatch(RegExp::GetEngineVersion()));
}

} // namespace
} // namespace Toolkit
