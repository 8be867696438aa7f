#include "toolkit/core/TString.h"

#include "support/CompiledLocale.h"
#include "support/ScopedLocale.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <limits>
#include <string>
#include <thread>
#include <type_traits>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::CompiledLocale;
using TestSupport::ScopedLocale;
using Wide = TString<wchar_t>;
using Narrow = TString<char>;

std::vector<Wide> Tokens(const Wide& text, const Wide& delimiters, bool skipEmpty)
{
    std::vector<Wide> tokens;
    text.GetTokens(delimiters, tokens, skipEmpty);
    return tokens;
}

Wide Replace(Wide text, const Wide& from, const Wide& to)
{
    text.Replace(from, to);
    return text;
}

TEST(TStringTest, IsTheSameTypeInTheToolkitNamespace)
{
    EXPECT_TRUE((std::is_same_v<Toolkit::TString<wchar_t>, ::TString<wchar_t>>));
}

TEST(TStringTest, ConstructsFromLiteralsStringsAndCharacters)
{
    EXPECT_EQ(Wide(), L"");
    EXPECT_EQ(Wide(L"text"), L"text");
    EXPECT_EQ(Wide(std::wstring(L"a\0b", 3)).size(), 3u);
    EXPECT_EQ(Wide(L'x'), L"x");
    EXPECT_EQ(Narrow("text"), "text");
    EXPECT_EQ(Narrow('x'), "x");
}

TEST(TStringTest, ConstructsOneCharacterFromANullCharacter)
{
    EXPECT_EQ(Wide(L'\0').size(), 1u);
    EXPECT_EQ(Narrow('\0').size(), 1u);
}

TEST(TStringTest, ConstructsAnEmptyStringFromANullPointer)
{
    const wchar_t* const nothing = nullptr;

    EXPECT_TRUE(Wide(nothing).empty());
}

TEST(TStringTest, KeepsNullCharactersInCopiesAndAssignments)
{
    const Wide original(std::wstring(L"a\0b", 3));

    const Wide copy(original);
    Wide assigned(L"other");
    const Wide& result = (assigned = original);

    EXPECT_EQ(copy, original);
    EXPECT_EQ(assigned, original);
    EXPECT_EQ(&result, &assigned);
}

TEST(TStringTest, AddsNoFieldsToTheStandardString)
{
    EXPECT_EQ(sizeof(Wide), sizeof(std::wstring));
    EXPECT_EQ(sizeof(Narrow), sizeof(std::string));
}

TEST(TStringTest, HasTheStandardOperations)
{
    const Wide text = L"left" + Wide(L"/") + L"right";

    EXPECT_EQ(text.find(L'/'), 4u);
    EXPECT_EQ(text.substr(5), L"right");
    EXPECT_LT(Wide(L"a"), Wide(L"b"));
}

TEST(TStringTest, SharesOneEmptyString)
{
    EXPECT_EQ(&Wide::Empty(), &Wide::Empty());
    EXPECT_TRUE(Wide::Empty().empty());
    EXPECT_EQ(&Narrow::Empty(), &Narrow::Empty());
    EXPECT_TRUE(Narrow::Empty().empty());
}

TEST(TStringTest, SharesTheEmptyStringAmongThreads)
{
    const Wide* wide = nullptr;
    const Narrow* narrow = nullptr;
    std::thread([&] {
        wide = &Wide::Empty();
        narrow = &Narrow::Empty();
    }).join();

    EXPECT_EQ(wide, &Wide::Empty());
    EXPECT_EQ(narrow, &Narrow::Empty());
}

struct ComparisonCase {
    const wchar_t* left;
    const wchar_t* right;
    int expected;
};

TEST(TStringTest, ComparesRegardlessOfCase)
{
    constexpr ComparisonCase cases[] = {
        {L"abc", L"ABC", 0},
        {L"ab", L"ABC", -1},
        {L"abd", L"ABC", 1},
        {L"abc", L"ABD", -1},
        {L"", L"", 0},
        {L"", L"a", -1},
        {L"a", L"", 1},
        {L"B", L"a", 1},
        {L"_", L"A", -1},
        {L"[", L"a", -1},
        {L"a text of more than one block of characters",
         L"A TEXT OF MORE THAN ONE BLOCK OF CHARACTERS", 0},
        {L"a text of more than one block of characters",
         L"A TEXT OF MORE THAN ONE BLOCK OF CHARACTERZ", -1},
        {L"a text of more than one block", L"A TEXT OF MORE than", 1}};
    for (const auto& [left, right, expected] : cases) {
        SCOPED_TRACE(testing::Message() << left << " with " << right);
        EXPECT_EQ(Wide(left).compareNoCase(right), expected);
    }
}

TEST(TStringTest, ComparesBeyondNullCharacters)
{
    const Wide left(std::wstring(L"a\0b", 3));
    const Wide right(std::wstring(L"A\0C", 3));

    EXPECT_EQ(left.compareNoCase(right), -1);
    EXPECT_EQ(left.compareNoCase(L"a"), 1);
}

TEST(TStringTest, ComparesNarrowStringsRegardlessOfCase)
{
    EXPECT_EQ(Narrow("abc").compareNoCase("ABC"), 0);
    EXPECT_EQ(Narrow("ab").compareNoCase("ABC"), -1);
    EXPECT_EQ(Narrow("abd").compareNoCase("ABC"), 1);
    EXPECT_EQ(Narrow("\xE9").compareNoCase("\xE9"), 0);
    EXPECT_NE(Narrow("\xE9").compareNoCase("\xC9"), 0) << "in the C locale";
}

TEST(TStringTest, ComparesWideCharactersAsSignedNumbers)
{
    const Wide lowest(std::numeric_limits<wchar_t>::min());
    const Wide highest(std::numeric_limits<wchar_t>::max());

    EXPECT_EQ(lowest.compareNoCase(L"a"), -1);
    EXPECT_EQ(highest.compareNoCase(L"a"), 1);
}

TEST(TStringTest, ComparesAccentedLettersWithTheCaseFoldingOfTheLocale)
{
    const Wide small(L"\u00E9t\u00E9 \u03B1 and sixteen more characters");
    const Wide capital(L"\u00C9T\u00C9 \u0391 AND SIXTEEN MORE CHARACTERS");
    {
        const ScopedLocale locale("C.UTF-8");
        EXPECT_EQ(small.compareNoCase(capital), 0);
    }
    const ScopedLocale locale("C");
    EXPECT_EQ(small.compareNoCase(capital), 1);
}

TEST(TStringTest, DistinguishesDottedFromDotlessIInATurkishLocale)
{
    const CompiledLocale turkish("tr_TR", "UTF-8");
    if (!turkish.IsAvailable())
        GTEST_SKIP() << "no Turkish locale on this system";
    const ScopedLocale locale(turkish.Name());

    EXPECT_EQ(Wide(L"TITLE").compareNoCase(L"title"), 1);
    EXPECT_EQ(Wide(L"A TITLE OF TWENTY CHARACTERS").compareNoCase(L"a title of twenty characters"),
              1);
    EXPECT_EQ(Wide(L"TITLE").compareNoCase(L"t\u0131tle"), 0);
    EXPECT_EQ(Wide(L"TEXT").compareNoCase(L"text"), 0);
}

TEST(TStringTest, FindsASubstringRegardlessOfCase)
{
    EXPECT_TRUE(Wide(L"A Long Text").HasSubstring(L"long"));
    EXPECT_TRUE(Wide(L"a long text").HasSubstring(L"TEXT"));
    EXPECT_FALSE(Wide(L"a long text").HasSubstring(L"texts"));
    EXPECT_FALSE(Wide(L"short").HasSubstring(L"shorter"));
    EXPECT_TRUE(Narrow("A Long Text").HasSubstring("lONG"));
    EXPECT_FALSE(Narrow("A Long Text").HasSubstring("longer"));
}

TEST(TStringTest, FindsASubstringInALongString)
{
    const Wide text = std::wstring(5000, L'a') + L"Needle" + std::wstring(700, L'b');

    EXPECT_TRUE(text.HasSubstring(L"nEEDLE"));
    EXPECT_TRUE(text.HasSubstring(L"AN"));
    EXPECT_TRUE(text.HasSubstring(std::wstring(700, L'B')));
    EXPECT_FALSE(text.HasSubstring(std::wstring(701, L'B')));
    EXPECT_FALSE(text.HasSubstring(L"needles"));
}

TEST(TStringTest, FindsAnEmptySubstringInEveryString)
{
    EXPECT_TRUE(Wide(L"text").HasSubstring(L""));
    EXPECT_TRUE(Wide(L"").HasSubstring(L""));
    EXPECT_TRUE(Narrow("").HasSubstring(""));
    EXPECT_FALSE(Wide(L"").HasSubstring(L"a"));
}

TEST(TStringTest, EndsASubstringSearchAtNullCharacters)
{
    const Wide text(std::wstring(L"ab\0cd", 5));

    EXPECT_FALSE(text.HasSubstring(L"cd"));
    EXPECT_TRUE(Wide(L"xaby").HasSubstring(Wide(std::wstring(L"ab\0zz", 5))));
    EXPECT_TRUE(Wide(L"x").HasSubstring(Wide(L'\0')));
}

TEST(TStringTest, FoldsNoCharactersAboveU00FFInASubstringSearch)
{
    const ScopedLocale locale("C.UTF-8");

    EXPECT_FALSE(Wide(L"\u0391").HasSubstring(L"\u03B1"));
    EXPECT_FALSE(Wide(L"\u0141").HasSubstring(L"a")) << "values are not truncated to eight bits";
    EXPECT_FALSE(Wide(L"\u0141").HasSubstring(L"\u0161"));
    EXPECT_TRUE(Wide(L"\u0391").HasSubstring(L"\u0391"));
    EXPECT_TRUE(Wide(static_cast<wchar_t>(-65)).HasSubstring(static_cast<wchar_t>(-65)));
}

TEST(TStringTest, FoldsTheBytesOfAnEightBitLocale)
{
    const CompiledLocale latin("de_DE", "ISO-8859-1");
    if (!latin.IsAvailable())
        GTEST_SKIP() << "no eight-bit locale on this system";
    const ScopedLocale locale(latin.Name());

    EXPECT_TRUE(Wide(L"caf\u00C9").HasSubstring(L"caf\u00E9"));
    EXPECT_TRUE(Narrow("caf\xC9").HasSubstring("caf\xE9"));
    EXPECT_EQ(Narrow("caf\xC9").compareNoCase("caf\xE9"), 0);
    EXPECT_EQ(Wide(L"CAF\u00C9").ToLower(), L"caf\u00E9");
}

TEST(TStringTest, TrimsSpacesAndTabsAtBothEnds)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L" a b\t", L"a b"},
        {L"", L""},
        {L" ", L""},
        {L" \t \t", L""},
        {L"a", L"a"},
        {L" a", L"a"},
        {L"a ", L"a"},
        {L"line\n", L"line\n"},
        {L" \r\n ", L"\r\n"},
        {L"\v a \f", L"\v a \f"},
        {L"\u00A0a\u00A0", L"\u00A0a\u00A0"}};
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(Wide(text).Trim(), expected);
    }
}

TEST(TStringTest, ChangesItselfInTrimAndToLower)
{
    Wide text(L" A ");

    EXPECT_EQ(&text.Trim(), &text);
    EXPECT_EQ(&text.ToLower(), &text);
    EXPECT_EQ(text, L"a");
}

TEST(TStringTest, LeavesCharactersAboveU00FFUnchangedInToLower)
{
    const ScopedLocale locale("C.UTF-8");
    const wchar_t negative = -191;

    EXPECT_EQ(Wide(L"ABC xyz [\\] 09").ToLower(), L"abc xyz [\\] 09");
    EXPECT_EQ(Wide(L"\u0391\u0141\U0001F600").ToLower(), L"\u0391\u0141\U0001F600");
    EXPECT_EQ(Wide(negative).ToLower(), Wide(negative));
    EXPECT_EQ(Wide(std::wstring(L"A\0B", 3)).ToLower(), Wide(std::wstring(L"a\0b", 3)));
}

struct ReplacementCase {
    const wchar_t* text;
    const wchar_t* from;
    const wchar_t* to;
    const wchar_t* expected;
};

TEST(TStringTest, ReplacesEveryOccurrence)
{
    constexpr ReplacementCase cases[] = {{L"a-b-c", L"-", L"+", L"a+b+c"},
                                         {L"a-b-c", L"-", L" to ", L"a to b to c"},
                                         {L"one two", L"three", L"x", L"one two"},
                                         {L"", L"a", L"b", L""},
                                         {L"aaaa", L"aa", L"b", L"bb"},
                                         {L"aaaaa", L"aa", L"b", L"bba"},
                                         {L"a b c", L" ", L"", L"abc"},
                                         {L"ABab", L"ab", L"x", L"ABx"}};
    for (const auto& [text, from, to, expected] : cases) {
        SCOPED_TRACE(testing::Message() << text << ": " << from << " to " << to);
        EXPECT_EQ(Replace(text, from, to), expected);
    }
}

TEST(TStringTest, ReplacesOccurrencesThatReplacementsCreate)
{
    constexpr ReplacementCase cases[] = {
        {L"aab", L"ab", L"b", L"b"},        {L"aaab", L"ab", L"b", L"b"},
        {L"a((b))", L"()", L"", L"a((b))"}, {L"(())()", L"()", L"", L""},
        {L"a\r\r\n\n", L"\r\n", L"", L"a"}, {L"a    b", L"  ", L" ", L"a b"},
        {L"abb", L"ab", L"ba", L"bba"},     {L"aabb", L"ab", L"ba", L"bbaa"},
        {L"xabcy", L"bc", L"b", L"xaby"},   {L"abcc", L"abc", L"ab", L"ab"}};
    for (const auto& [text, from, to, expected] : cases) {
        SCOPED_TRACE(testing::Message() << text << ": " << from << " to " << to);
        EXPECT_EQ(Replace(text, from, to), expected);
    }
}

TEST(TStringTest, ReplacesWithStringsOfEqualOrGreaterLength)
{
    EXPECT_EQ(Replace(L"aab", L"ab", L"bbb"), L"bbbbb");
    EXPECT_EQ(Replace(L"aab", L"ab", L"ba"), L"baa");
}

TEST(TStringTest, ChangesNothingWhenReplacingAnEmptyString)
{
    EXPECT_EQ(Replace(L"text", L"", L"x"), L"text");
}

TEST(TStringTest, AcceptsItselfAsAnArgumentOfReplace)
{
    Wide same(L"a long text");
    same.Replace(same, L"short");
    EXPECT_EQ(same, L"short");

    Wide inserted(L"text");
    inserted.Replace(L"text", inserted.substr(1));
    EXPECT_EQ(inserted, L"ext");

    Wide letters(L"ab");
    letters.Replace(L"abc", letters);
    EXPECT_EQ(letters, L"ab");
}

TEST(TStringTest, KeepsNullCharactersInReplace)
{
    const Wide text(std::wstring(L"a\0-\0b", 5));

    EXPECT_EQ(Replace(text, L"-", L"+"), Wide(std::wstring(L"a\0+\0b", 5)));
    EXPECT_EQ(Replace(text, Wide(L'\0'), L""), L"a-b");
}

TEST(TStringTest, ReadsTheNumberAtTheBeginning)
{
    constexpr std::pair<const wchar_t*, int> cases[] = {
        {L" 42abc", 42},
        {L"abc", 0},
        {L"", 0},
        {L"-12x", -12},
        {L"+7", 7},
        {L"\t\n\v\f\r 8", 8},
        {L"- 1", 0},
        {L"0x10", 0},
        {L"007", 7},
        {L"1,000", 1},
        {L"2147483647", 2147483647},
        {L"2147483648", 2147483647},
        {L"-2147483648", -2147483647 - 1},
        {L"-99999999999999999999", -2147483647 - 1}};
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(Wide(text).ToInt32(), expected);
    }
}

TEST(TStringTest, WrapsOrClampsUnsignedNumbersOutOfRange)
{
    constexpr std::pair<const wchar_t*, unsigned int> cases[] = {{L" 42abc", 42u},
                                                                 {L"abc", 0u},
                                                                 {L"", 0u},
                                                                 {L"4294967295", 4294967295u},
                                                                 {L"4294967296", 4294967295u},
                                                                 {L"-1", 4294967295u},
                                                                 {L"-4294967295", 1u},
                                                                 {L"-4294967296", 4294967295u},
                                                                 {L"+3", 3u}};
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(Wide(text).ToUint32(), expected);
    }
}

TEST(TStringTest, KeepsEmptyTokens)
{
    EXPECT_THAT(Tokens(L"a,,b", L",", false), ElementsAre(L"a", L"", L"b"));
    EXPECT_THAT(Tokens(L",a,", L",", false), ElementsAre(L"", L"a", L""));
    EXPECT_THAT(Tokens(L"", L",", false), ElementsAre(L""));
    EXPECT_THAT(Tokens(L",", L",", false), ElementsAre(L"", L""));
    EXPECT_THAT(Tokens(L"abc", L",", false), ElementsAre(L"abc"));
}

TEST(TStringTest, CanSkipEmptyTokens)
{
    EXPECT_THAT(Tokens(L"a,,b", L",", true), ElementsAre(L"a", L"b"));
    EXPECT_THAT(Tokens(L",a,", L",", true), ElementsAre(L"a"));
    EXPECT_THAT(Tokens(L"", L",", true), IsEmpty());
    EXPECT_THAT(Tokens(L",,,", L",", true), IsEmpty());
}

TEST(TStringTest, SeparatesAtEveryDelimiterCharacter)
{
    EXPECT_THAT(Tokens(L"a b\tc", L" \t", true), ElementsAre(L"a", L"b", L"c"));
    EXPECT_THAT(Tokens(L"a\u20AC-b", L"-\u20AC", false), ElementsAre(L"a", L"", L"b"));
    EXPECT_THAT(Tokens(Wide(std::wstring(L"a\0b", 3)), Wide(L'\0'), false),
                ElementsAre(L"a", L"b"));
}

TEST(TStringTest, ReturnsOneTokenWithoutDelimiters)
{
    EXPECT_THAT(Tokens(L"a b", L"", false), ElementsAre(L"a b"));
    EXPECT_THAT(Tokens(L"a b", L"", true), ElementsAre(L"a b"));
    EXPECT_THAT(Tokens(L"", L"", true), IsEmpty());
}

TEST(TStringTest, ReplacesTheContentsOfTheTokenVector)
{
    std::vector<Wide> tokens = {L"old one", L"old two", L"old three"};

    Wide(L"a,b").GetTokens(L",", tokens, false);
    EXPECT_THAT(tokens, ElementsAre(L"a", L"b"));

    Wide(L",").GetTokens(L",", tokens, true);
    EXPECT_THAT(tokens, IsEmpty());
}

TEST(TStringTest, AcceptsStringAndDelimitersInTheOutputVector)
{
    std::vector<Wide> tokens = {L"a long first token,and a second one", L",;", L"old"};
    tokens[0].GetTokens(tokens[1], tokens, false);
    EXPECT_THAT(tokens, ElementsAre(L"a long first token", L"and a second one"));

    tokens = {L"old", L";x,"};
    Wide(L"a,b;c").GetTokens(tokens[1], tokens, false);
    EXPECT_THAT(tokens, ElementsAre(L"a", L"b", L"c"));
}

// The call does not return, so an alarm ends the process.
TEST(TStringDeathTest, NeverReturnsWhenReplacingAStringWithOneThatContainsIt)
{
    const auto replaceForASecond = [] {
        ::alarm(1);
        Replace(L"a", L"a", L"a");
        std::exit(0);
    };

    EXPECT_EXIT(replaceForASecond(), testing::KilledBySignal(SIGALRM), "");
}

} // namespace
} // namespace Toolkit
