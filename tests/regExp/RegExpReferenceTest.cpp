#include "toolkit/regExp/RegExp.h"

#include "support/RandomText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <ostream>
#include <string>
#include <utility>

#include "regExp/CaughtException.h"
#include "regExp/DirectPcre.h"
#include "regExp/Samples.h"

namespace Toolkit {
namespace {

using TestSupport::DirectPcre;
using TestSupport::RandomText;

// The string that an operation returns, or the message that it throws.
struct Outcome {
    std::string text;
    std::string message;

    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome)
{
    return stream << '"' << outcome.text << "\" thrown: " << outcome.message;
}

// Returns the message of a search that failed with `code`.
std::string GetSearchMessage(int code)
{
    const std::string digits = std::to_string(code);
    return digits + std::string("RegExp::Match return error: ").substr(digits.size());
}

// Returns the message of a pattern that does not compile. Omits a pattern that is not UTF-8, which
// in these tests is only "\xFF".
std::string GetCompileMessage(const DirectPcre& direct, const std::string& pattern)
{
    const std::string message = std::string(" : ") + direct.ErrorText() +
                                " (@offset: " + std::to_string(direct.ErrorOffset()) + ") " +
                                (pattern == "\xFF" ? std::string() : pattern);
    const std::string prefix = "pcre_compile failed with error ";
    const auto isFirstByte = [](char byte) { return (byte & 0xC0) != 0x80; };
    const auto length = std::count_if(message.begin(), message.end(), isFirstByte);
    return message + prefix.substr(std::min(static_cast<std::size_t>(length), prefix.size()));
}

// The reference implementation: replaces one match at a time. Each search is a direct call to PCRE
// on the whole string.
Outcome ReplaceByReference(const std::string& pattern, const std::string& replacement,
                           const std::string& subject)
{
    DirectPcre direct(pattern);
    if (!direct.Code())
        return {"", GetCompileMessage(direct, pattern)};

    constexpr int options = PCRE_NOTBOL | PCRE_NOTEOL | PCRE_NOTEMPTY;
    std::string text = subject;
    int result = direct.Execute(text, 0, options);
    while (result > 0) {
        const auto begin = static_cast<std::size_t>(direct.Offsets()[0]);
        text.replace(begin, direct.Value(text, 0).size(), replacement);
        const auto start = static_cast<unsigned short>(begin + replacement.size());
        result = direct.Execute(text, start, options);
    }
    return result < -1 ? Outcome{"", GetSearchMessage(result)} : Outcome{text, ""};
}

Outcome ReplaceByLibrary(const std::string& pattern, const std::string& replacement,
                         const std::string& subject)
{
    Outcome outcome;
    RegExp regExp(TString<char>(pattern), RegExpOptions::None);
    const auto exception = TestSupport::CaughtException(
        [&] { outcome.text = regExp.Replace(replacement, subject, 0); });
    if (exception.IsValid())
        outcome.message = exception->message;
    return outcome;
}

void ExpectSameReplacement(const std::string& pattern, const std::string& replacement,
                           const std::string& subject)
{
    ASSERT_EQ(ReplaceByLibrary(pattern, replacement, subject),
              ReplaceByReference(pattern, replacement, subject))
        << "pattern " << pattern << " replacement " << replacement << " subject "
        << subject.substr(0, 100);
}

void ExpectSameNamedValue(const Group& group, int resultCode, const DirectPcre& direct,
                          const std::string& subject)
{
    // If two groups have the same name, the engine returns the one that took part.
    if (group.name.empty() || group.value.empty())
        return;
    const char* value = nullptr;
    const int length =
        pcre_get_named_substring(direct.Code(), subject.c_str(), const_cast<int*>(direct.Offsets()),
                                 resultCode, group.name.c_str(), &value);
    ASSERT_GE(length, 0);
    EXPECT_EQ(group.value, value);
    pcre_free_substring(value);
}

void ExpectSameGroups(const MatchResult& result, const DirectPcre& direct,
                      const std::string& subject)
{
    for (int group = 0; group < result.resultCode; ++group) {
        const auto number = static_cast<unsigned short>(group);
        EXPECT_EQ(result[number]->value, direct.Value(subject, group)) << "group " << group;
        EXPECT_EQ(result[number]->index, number);
        ExpectSameNamedValue(*result[number], result.resultCode, direct, subject);
    }
}

void ExpectSameMatch(const std::string& pattern, const std::string& subject)
{
    const RegExp regExp(TString<char>(pattern), RegExpOptions::None);
    DirectPcre direct(pattern);
    const int expected = direct.Execute(subject, 0, 0);
    const auto match = [&] {
        const auto result = regExp.Match(subject);
        EXPECT_EQ(result->resultCode, expected);
        EXPECT_EQ(static_cast<int>(result->Count()), std::max(expected, 0));
        EXPECT_EQ(regExp.IsMatch(subject), expected >= 1);
        ExpectSameGroups(*result, direct, subject);
    };

    const auto exception = TestSupport::CaughtException(match);
    ASSERT_EQ(exception.IsValid(), expected < -1);
    if (!exception.IsValid())
        return;
    EXPECT_EQ(exception->message,
              direct.Code() ? GetSearchMessage(expected) : GetCompileMessage(direct, pattern));
}

// Returns a pattern made of random pieces; most such patterns compile.
std::string RandomPattern(RandomText& random)
{
    constexpr const char* pieces[] = {"a",    "b",        "(a)", "[^a]",  ".",   "|",      "a+",
                                      "b*",   "^",        "$",   "\\b",   "\\B", "(?<=a)", "(?<!b)",
                                      "(",    ")",        "?",   "\\G",   "\\A", "\\K",    "\n",
                                      "(?m)", "\xC3\xA9", "\\C", "(?=b)", "\\R", "[[:<:]]"};
    std::string pattern;
    for (auto count = random.Number(1, 6); count > 0; --count)
        pattern += pieces[random.Number<std::size_t>(0, std::size(pieces) - 1)];
    return pattern;
}

std::string RandomSubject(RandomText& random)
{
    constexpr const char* pieces[] = {"a", "b", "\n", " ", "\xC3\xA9", "ab", "aa", "\r\n"};
    std::string subject;
    for (auto count = random.Number(0, 12); count > 0; --count)
        subject += pieces[random.Number<std::size_t>(0, std::size(pieces) - 1)];
    return subject;
}

constexpr const char* c_replacements[] = {"",   "a",  "b",        "ab",     "aa",
                                          "\n", "$1", "\xC3\xA9", "xyz\\b", " "};

TEST(RegExpReferenceTest, MatchesTheSamplesLikeTheEngine)
{
    for (const char* pattern : TestSupport::c_patterns) {
        for (const char* subject : TestSupport::c_subjects) {
            SCOPED_TRACE(std::string(pattern) + " in " + subject);
            ExpectSameMatch(pattern, subject);
        }
    }
}

TEST(RegExpReferenceTest, ReplacesInTheSamplesLikeTheReference)
{
    for (const char* pattern : TestSupport::c_patterns) {
        for (const char* subject : TestSupport::c_subjects) {
            for (const char* replacement : c_replacements)
                ExpectSameReplacement(pattern, replacement, subject);
        }
    }
}

TEST(RegExpReferenceTest, ReplacesWithInvalidUtf8LikeTheReference)
{
    for (const char* pattern : TestSupport::c_patterns) {
        for (const char* subject : TestSupport::c_subjects) {
            for (const char* replacement : {"\xFF", "\xC3", "\xA9", "\xED\xA0\x80", "\xC0\x80"})
                ExpectSameReplacement(pattern, replacement, subject);
        }
    }
}

TEST(RegExpReferenceTest, MatchesRandomPatternsLikeTheEngine)
{
    RandomText random(1);
    for (int round = 0; round < 3000; ++round) {
        const std::string pattern = RandomPattern(random);
        const std::string subject = RandomSubject(random);
        SCOPED_TRACE(pattern + " in " + subject);
        ExpectSameMatch(pattern, subject);
    }
}

TEST(RegExpReferenceTest, ReplacesRandomPatternsLikeTheReference)
{
    RandomText random(2);
    for (int round = 0; round < 20000; ++round) {
        const std::string pattern = RandomPattern(random);
        const std::string replacement =
            c_replacements[random.Number<std::size_t>(0, std::size(c_replacements) - 1)];
        ExpectSameReplacement(pattern, replacement, RandomSubject(random));
    }
}

TEST(RegExpReferenceTest, ReplacesRandomPatternsInLongSubjectsLikeTheReference)
{
    RandomText random(4);
    for (int round = 0; round < 200; ++round) {
        const std::string pattern = RandomPattern(random);
        std::string subject;
        for (int i = 0; i < 25; ++i)
            subject += RandomSubject(random) + std::string(random.Number<std::size_t>(0, 400), '.');
        ExpectSameReplacement(pattern, "c", subject);
    }
}

TEST(RegExpReferenceTest, ReplacesInLongSubjectsLikeTheReference)
{
    // No replacement contains a match, so replacing ends wherever the search continues.
    constexpr std::pair<const char*, const char*> cases[] = {{"a", "-"},
                                                             {"a", ""},
                                                             {"a", "xyz"},
                                                             {"a+", "\n"},
                                                             {"(?<=b)a", "c"},
                                                             {"\\ba", "c"},
                                                             {"[^b]a", "b"},
                                                             {"(?m)^a", "c"},
                                                             {"ba", "\xC3\xA9"},
                                                             {"\xC3\xA9"
                                                              "a",
                                                              "e"}};
    RandomText random(3);
    for (const std::size_t length : {65530u, 65536u, 65545u, 66000u, 70000u}) {
        std::string subject(length, '.');
        for (int i = 0; i < 40; ++i)
            subject.replace(random.Number<std::size_t>(length - 6000, length - 4), 3, "\nba");
        for (const auto& [pattern, replacement] : cases)
            ExpectSameReplacement(pattern, replacement, subject);
    }
}

TEST(RegExpReferenceTest, TreatsOffsetsInsideCharactersLikeTheReference)
{
    std::string subject;
    while (subject.size() < 66000)
        subject += "\xC3\xA9.\xE2\x82\xAC";
    for (std::size_t position = 65520; position < 65560; ++position) {
        std::string text = subject;
        // Inserts before the first byte of a character, so that the string stays UTF-8.
        while ((text[position] & 0xC0) == 0x80)
            ++position;
        text.insert(position, "a");
        for (const char* replacement : {"", "b", "bb", "bbb"})
            ExpectSameReplacement("a", replacement, text);
    }
}

} // namespace
} // namespace Toolkit
