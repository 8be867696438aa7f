// Compares the string operations with plain reference implementations, on random strings.

#include "toolkit/core/TString.h"

#include "references/Replace.h"
#include "support/CompiledLocale.h"
#include "support/RandomText.h"
#include "support/ScopedLocale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cwctype>
#include <limits>
#include <string>
#include <vector>

namespace Toolkit {
namespace {

using References::ReplaceRepeatedly;
using References::ReplacingTerminates;
using TestSupport::CompiledLocale;
using TestSupport::RandomText;
using TestSupport::ScopedLocale;
using Wide = TString<wchar_t>;
using Narrow = TString<char>;

constexpr int c_rounds = 20000;
constexpr std::size_t c_none = std::wstring::npos;

std::vector<std::wstring> ReferenceTokens(const std::wstring& text, const std::wstring& delimiters,
                                          bool skipEmpty)
{
    std::vector<std::wstring> tokens;
    std::size_t start = skipEmpty ? text.find_first_not_of(delimiters, 0) : 0;
    std::size_t end = text.find_first_of(delimiters, start);
    while (end != c_none || start != c_none) {
        tokens.push_back(text.substr(start, end == c_none ? c_none : end - start));
        if (skipEmpty)
            start = text.find_first_not_of(delimiters, end);
        else
            start = end == c_none ? c_none : end + 1;
        end = text.find_first_of(delimiters, start);
    }
    return tokens;
}

std::wstring ReferenceTrim(std::wstring text)
{
    const auto isBlank = [](wchar_t character) { return character == 0x20 || character == 0x09; };
    std::size_t leading = 0;
    while (leading < text.size() && isBlank(text[leading]))
        ++leading;
    std::size_t last = text.empty() ? 0 : text.size() - 1;
    while (last > leading && isBlank(text[last]))
        --last;
    if (last + 1 < text.size())
        text.erase(last + 1);
    text.erase(0, leading);
    return text;
}

int ReferenceFold(wchar_t character)
{
    return static_cast<int>(std::towlower(static_cast<std::wint_t>(character)));
}

int ReferenceFold(char character)
{
    return std::tolower(static_cast<signed char>(character));
}

template <typename Char>
int ReferenceCompare(const std::basic_string<Char>& left, const std::basic_string<Char>& right)
{
    for (std::size_t i = 0; i < std::min(left.size(), right.size()); ++i) {
        const int a = ReferenceFold(left[i]);
        const int b = ReferenceFold(right[i]);
        if (a != b)
            return a > b ? 1 : -1;
    }
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

template <typename Char>
bool ReferenceContains(const std::basic_string<Char>& text, const std::basic_string<Char>& needle)
{
    const auto folded = [](std::basic_string<Char> characters) {
        for (Char& character : characters) {
            if (character >= std::numeric_limits<signed char>::min() && character <= 0xFF &&
                (sizeof(Char) == 1 || character >= 0))
                character = static_cast<Char>(std::tolower(character));
        }
        return characters;
    };
    return folded(text.c_str()).find(folded(needle.c_str())) != c_none;
}

TEST(TStringReferenceTest, TokenizesAsTheReferenceDoes)
{
    RandomText random(1);
    std::vector<Wide> tokens;
    for (int round = 0; round < c_rounds; ++round) {
        const std::wstring text = random.Text<wchar_t>(L"ab,;\u20AC", 24);
        const std::wstring delimiters = random.Text<wchar_t>(L",;\u20ACa", 3);
        const bool skipEmpty = random.Number(0, 1) == 1;

        Wide(text).GetTokens(delimiters, tokens, skipEmpty);

        const std::vector<std::wstring> expected = ReferenceTokens(text, delimiters, skipEmpty);
        ASSERT_TRUE(std::equal(tokens.begin(), tokens.end(), expected.begin(), expected.end()))
            << testing::PrintToString(text) << " at " << testing::PrintToString(delimiters);
    }
}

TEST(TStringReferenceTest, TrimsAsTheReferenceDoes)
{
    RandomText random(2);
    for (int round = 0; round < c_rounds; ++round) {
        const std::wstring text = random.Text<wchar_t>(L" \t \tab\n\u00A0", 12);

        ASSERT_EQ(Wide(text).Trim(), ReferenceTrim(text)) << testing::PrintToString(text);
    }
}

TEST(TStringReferenceTest, ReplacesAsTheReferenceDoes)
{
    RandomText random(3);
    for (int round = 0; round < c_rounds; ++round) {
        const std::wstring from = random.Text<wchar_t>(L"ab", 4);
        const std::wstring to = random.Text<wchar_t>(L"abc", 4);
        const std::wstring text = random.Text<wchar_t>(L"abc", 30);
        if (!ReplacingTerminates(from, to))
            continue;

        Wide replaced(text);
        replaced.Replace(from, to);

        std::wstring expected = text;
        ReplaceRepeatedly(expected, from, to);
        ASSERT_EQ(replaced, expected) << text << from << to;
    }
}

TEST(TStringReferenceTest, ReplacesWithLongerStringsAsTheReferenceDoes)
{
    RandomText random(4);
    for (int round = 0; round < c_rounds; ++round) {
        // The replacement contains no "b", so Replace() returns.
        const std::wstring from = random.Text<wchar_t>(L"ac", 2) + L"b";
        const std::wstring to = random.Text<wchar_t>(L"acd", 8);
        const std::wstring text = random.Text<wchar_t>(L"abcd", 40);

        Wide replaced(text);
        replaced.Replace(from, to);

        std::wstring expected = text;
        ReplaceRepeatedly(expected, from, to);
        ASSERT_EQ(replaced, expected) << text << from << to;
    }
}

// Two strings that differ in the case of many letters, and otherwise in at most one character.
template <typename Char>
struct SimilarStrings {
    SimilarStrings(RandomText& random, const std::basic_string<Char>& alphabet,
                   std::size_t maxLength)
        : left(random.Text(alphabet, maxLength)), right(left)
    {
        for (Char& character : right) {
            if (character < 0x80 && character > 0 && random.Number(0, 1) == 1)
                character = static_cast<Char>(character ^ (std::isalpha(character) ? 0x20 : 0));
        }
        const std::size_t index = random.Number<std::size_t>(0, right.size());
        if (random.Number(0, 1) == 1)
            right.insert(index, random.Text(alphabet, 1));
        else if (index < right.size())
            right[index] = alphabet[random.Number<std::size_t>(0, alphabet.size() - 1)];
    }

    std::basic_string<Char> left;
    std::basic_string<Char> right;
};

const std::wstring c_wideAlphabet =
    L"aAbBiIjJzZ@[`{09\u00E9\u00C9\u0130\u0131\u0391\u03B1\u0141\u20AC"
    L"\U0001F600" +
    std::wstring(1, static_cast<wchar_t>(-7));

void CompareInCurrentLocale(const std::string& locale)
{
    RandomText random(5);
    for (int round = 0; round < c_rounds; ++round) {
        const auto& alphabet = round % 2 == 0 ? c_wideAlphabet : c_wideAlphabet.substr(0, 16);
        const SimilarStrings<wchar_t> wide(random, alphabet, 60);
        const SimilarStrings<char> narrow(random, "aAbBiIzZ@[\xE9\xC9\xFF\x80", 40);

        ASSERT_EQ(Wide(wide.left).compareNoCase(wide.right),
                  ReferenceCompare(wide.left, wide.right))
            << locale << testing::PrintToString(wide.left) << testing::PrintToString(wide.right);
        ASSERT_EQ(Narrow(narrow.left).compareNoCase(narrow.right),
                  ReferenceCompare(narrow.left, narrow.right))
            << locale << testing::PrintToString(narrow.left);
    }
}

TEST(TStringReferenceTest, ComparesAsTheReferenceDoesInSeveralLocales)
{
    for (const char* const name : {"C", "C.UTF-8"}) {
        const ScopedLocale locale(name);
        CompareInCurrentLocale(name);
    }
    for (const char* const source : {"tr_TR", "de_DE"}) {
        const CompiledLocale compiled(source, source[0] == 't' ? "UTF-8" : "ISO-8859-1");
        if (!compiled.IsAvailable())
            continue;
        const ScopedLocale locale(compiled.Name());
        CompareInCurrentLocale(compiled.Name());
    }
}

template <typename Char>
void CheckSubstringSearch(const std::basic_string<Char>& alphabet, std::size_t maxLength,
                          int rounds)
{
    RandomText random(6);
    for (int round = 0; round < rounds; ++round) {
        const std::basic_string<Char> text = random.Text(alphabet, maxLength);
        const std::basic_string<Char> needle = random.Text(alphabet, 6);

        ASSERT_EQ(TString<Char>(text).HasSubstring(needle), ReferenceContains(text, needle))
            << testing::PrintToString(text) << " for " << testing::PrintToString(needle);
    }
}

TEST(TStringReferenceTest, FindsSubstringsAsTheReferenceDoes)
{
    const std::wstring wide =
        L"aAbB[\u00E9\u00C9\u0141" + std::wstring(1, static_cast<wchar_t>(-31));
    CheckSubstringSearch<wchar_t>(wide, 40, c_rounds);
    CheckSubstringSearch<wchar_t>(std::wstring(L"aA\0", 3), 40, c_rounds);
    CheckSubstringSearch<wchar_t>(wide, 3000, 2000);
    CheckSubstringSearch<char>("aAbB[\xE9\xC9\xFF", 40, c_rounds);
    CheckSubstringSearch<char>("aAbB[\xE9\xC9\xFF", 3000, 2000);
}

TEST(TStringReferenceTest, FindsSubstringsAsTheReferenceDoesInAnEightBitLocale)
{
    const CompiledLocale latin("de_DE", "ISO-8859-1");
    if (!latin.IsAvailable())
        GTEST_SKIP() << "no eight-bit locale on this system";
    const ScopedLocale locale(latin.Name());

    CheckSubstringSearch<wchar_t>(L"aA\u00E9\u00C9\u0141", 2000, 2000);
    CheckSubstringSearch<char>("aA\xE9\xC9\xFF", 2000, 2000);
}

} // namespace
} // namespace Toolkit
