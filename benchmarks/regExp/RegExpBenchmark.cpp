#include "toolkit/regExp/RegExp.h"

#include <benchmark/benchmark.h>

#include "regExp/OneMatch.h"
#if __has_include(<pcre.h>)
#include <pcre.h>
#define HAS_PCRE
#endif

#include <Poco/RegularExpression.h>
#include <QRegularExpression>
#include <boost/regex.hpp>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <re2/re2.h>
#include <regex>
#include <string>
#include <vector>

namespace OneMatch {
namespace {

using Toolkit::RegExp;
using Toolkit::RegExpOptions;

constexpr int c_numberCount = 1600;
const std::string c_numberPattern = "[0-9]+";
const std::string c_replacement = "many";

// Returns a string of 60 KB in which the pattern matches each number.
std::string MakeLongText()
{
    std::string text;
    for (int i = 0; i < c_numberCount; ++i)
        text += "the quick brown fox jumps " + std::to_string(1000 + i) + " times. ";
    return text;
}

std::string MakeExpectedText()
{
    std::string text;
    for (int i = 0; i < c_numberCount; ++i)
        text += "the quick brown fox jumps " + c_replacement + " times. ";
    return text;
}

BENCHMARK(RunIsMatch)->Name("BM_IsMatch_Toolkit");
BENCHMARK(RunMatch)->Name("BM_Match_Toolkit");

#ifdef HAS_PCRE
// Compiles and searches; returns the number of groups, including the whole match.
int MatchWithPcre(int (&offsets)[60])
{
    const char* error = nullptr;
    int offset = 0;
    pcre* const code = pcre_compile(c_pattern.c_str(), PCRE_UTF8, &error, &offset, nullptr);
    const int count = pcre_exec(code, nullptr, c_subject.data(), static_cast<int>(c_subject.size()),
                                0, 0, offsets, 60);
    pcre_free(code);
    return count;
}

void BM_IsMatch_Pcre(benchmark::State& state)
{
    for (auto _ : state) {
        int offsets[60];
        if (MatchWithPcre(offsets) != c_groupCount)
            state.SkipWithError("no match");
    }
}
BENCHMARK(BM_IsMatch_Pcre);

void BM_Match_Pcre(benchmark::State& state)
{
    for (auto _ : state) {
        int offsets[60];
        if (MatchWithPcre(offsets) != c_groupCount ||
            c_subject.compare(static_cast<std::size_t>(offsets[6]), 3, "org") != 0)
            state.SkipWithError("wrong groups");
    }
}
BENCHMARK(BM_Match_Pcre);
#endif

void BM_IsMatch_Poco(benchmark::State& state)
{
    for (auto _ : state) {
        Poco::RegularExpression::Match match;
        if (Poco::RegularExpression(c_pattern, Poco::RegularExpression::RE_UTF8)
                .match(c_subject, 0, match) != c_groupCount)
            state.SkipWithError("no match");
    }
}
BENCHMARK(BM_IsMatch_Poco);

void BM_IsMatch_Pcre2(benchmark::State& state)
{
    pcre2_match_data* const offsets = pcre2_match_data_create(20, nullptr);
    for (auto _ : state) {
        if (Pcre2Pattern(c_pattern).Search(offsets) != c_groupCount)
            state.SkipWithError("no match");
    }
    pcre2_match_data_free(offsets);
}
BENCHMARK(BM_IsMatch_Pcre2);

void BM_IsMatch_Boost(benchmark::State& state)
{
    for (auto _ : state) {
        if (!boost::regex_search(c_subject, boost::regex(c_pattern)))
            state.SkipWithError("no match");
    }
}
BENCHMARK(BM_IsMatch_Boost);

void BM_IsMatch_Re2(benchmark::State& state)
{
    for (auto _ : state) {
        if (!RE2::PartialMatch(c_subject, RE2(c_pattern)))
            state.SkipWithError("no match");
    }
}
BENCHMARK(BM_IsMatch_Re2);

void BM_IsMatch_Qt(benchmark::State& state)
{
    const QString pattern = QString::fromStdString(c_pattern);
    const QString subject = QString::fromStdString(c_subject);
    for (auto _ : state) {
        if (!QRegularExpression(pattern).match(subject).hasMatch())
            state.SkipWithError("no match");
    }
}
BENCHMARK(BM_IsMatch_Qt);

void BM_IsMatch_Std(benchmark::State& state)
{
    for (auto _ : state) {
        if (!std::regex_search(c_subject, std::regex(c_pattern)))
            state.SkipWithError("no match");
    }
}
BENCHMARK(BM_IsMatch_Std);

void BM_Match_Poco(benchmark::State& state)
{
    for (auto _ : state) {
        std::vector<std::string> groups;
        Poco::RegularExpression(c_pattern, Poco::RegularExpression::RE_UTF8)
            .split(c_subject, groups);
        if (std::ssize(groups) != c_groupCount || groups[3] != "org")
            state.SkipWithError("wrong groups");
    }
}
BENCHMARK(BM_Match_Poco);

void BM_Match_Pcre2(benchmark::State& state)
{
    pcre2_match_data* const offsets = pcre2_match_data_create(20, nullptr);
    for (auto _ : state) {
        if (Pcre2Pattern(c_pattern).Search(offsets) != c_groupCount || !HasLastGroup(offsets))
            state.SkipWithError("wrong groups");
    }
    pcre2_match_data_free(offsets);
}
BENCHMARK(BM_Match_Pcre2);

void BM_Match_Boost(benchmark::State& state)
{
    for (auto _ : state) {
        boost::smatch groups;
        if (!boost::regex_search(c_subject, groups, boost::regex(c_pattern)) ||
            groups[3].str() != "org")
            state.SkipWithError("wrong groups");
    }
}
BENCHMARK(BM_Match_Boost);

void BM_Match_Re2(benchmark::State& state)
{
    for (auto _ : state) {
        std::string groups[3];
        if (!RE2::PartialMatch(c_subject, RE2(c_pattern), &groups[0], &groups[1], &groups[2]) ||
            groups[2] != "org")
            state.SkipWithError("wrong groups");
    }
}
BENCHMARK(BM_Match_Re2);

void BM_Match_Qt(benchmark::State& state)
{
    const QString pattern = QString::fromStdString(c_pattern);
    const QString subject = QString::fromStdString(c_subject);
    for (auto _ : state) {
        const QRegularExpressionMatch match = QRegularExpression(pattern).match(subject);
        if (match.captured(3) != QLatin1String("org"))
            state.SkipWithError("wrong groups");
    }
}
BENCHMARK(BM_Match_Qt);

void BM_Match_Std(benchmark::State& state)
{
    for (auto _ : state) {
        std::smatch groups;
        const std::regex pattern(c_pattern);
        if (!std::regex_search(c_subject, groups, pattern) || groups[3].str() != "org")
            state.SkipWithError("wrong groups");
    }
}
BENCHMARK(BM_Match_Std);

// Measures `operation` on the long text. Checks its result after the loop, where the check is not
// measured.
template <typename Operation>
void Replace(benchmark::State& state, const Operation& operation)
{
    const std::string text = MakeLongText();
    std::string result;
    for (auto _ : state)
        result = operation(text);
    if (result != MakeExpectedText())
        state.SkipWithError("wrong text");
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void BM_ReplaceAll_Toolkit(benchmark::State& state)
{
    RegExp regExp(TString<char>(c_numberPattern), RegExpOptions::None);
    const TString<char> replacement = c_replacement;
    Replace(state, [&](const TString<char>& text) { return regExp.Replace(replacement, text, 0); });
}
BENCHMARK(BM_ReplaceAll_Toolkit);

// The word boundary depends on the preceding text, so the library cannot replace all matches in one
// pass.
void BM_ReplaceLookingBehind_Toolkit(benchmark::State& state)
{
    RegExp regExp(TString<char>("\\b" + c_numberPattern), RegExpOptions::None);
    const TString<char> replacement = c_replacement;
    Replace(state, [&](const TString<char>& text) { return regExp.Replace(replacement, text, 0); });
}
BENCHMARK(BM_ReplaceLookingBehind_Toolkit);

#ifdef HAS_PCRE
// Replaces one match after the other, each in three steps: replaces it, copies the whole string,
// and lets pcre_exec() validate all of it before the next search. Like RegExp::Replace(), truncates
// the offset of the next search to 16 bits.
std::string ReplaceInSteps(const std::string& pattern, const std::string& original)
{
    constexpr int options = PCRE_NOTBOL | PCRE_NOTEOL | PCRE_NOTEMPTY;
    const char* error = nullptr;
    int offset = 0;
    int offsets[60];
    pcre* const code = pcre_compile(pattern.c_str(), PCRE_UTF8, &error, &offset, nullptr);
    std::string text = original;
    std::string subject = original;
    unsigned short start = 0;
    while (pcre_exec(code, nullptr, subject.data(), static_cast<int>(subject.size()), start,
                     options, offsets, 60) > 0) {
        const auto begin = static_cast<std::size_t>(offsets[0]);
        const auto length = static_cast<std::size_t>(offsets[1] - offsets[0]);
        text.replace(begin, length, c_replacement);
        subject = text;
        start = static_cast<unsigned short>(begin + c_replacement.size());
    }
    pcre_free(code);
    return text;
}

void BM_ReplaceAll_Steps(benchmark::State& state)
{
    Replace(state, [](const std::string& text) { return ReplaceInSteps(c_numberPattern, text); });
}
BENCHMARK(BM_ReplaceAll_Steps);

void BM_ReplaceLookingBehind_Steps(benchmark::State& state)
{
    Replace(state,
            [](const std::string& text) { return ReplaceInSteps("\\b" + c_numberPattern, text); });
}
BENCHMARK(BM_ReplaceLookingBehind_Steps);
#endif

void BM_ReplaceAll_Poco(benchmark::State& state)
{
    Replace(state, [](std::string text) {
        Poco::RegularExpression(c_numberPattern, Poco::RegularExpression::RE_UTF8)
            .subst(text, c_replacement, Poco::RegularExpression::RE_GLOBAL);
        return text;
    });
}
BENCHMARK(BM_ReplaceAll_Poco);

void BM_ReplaceAll_Pcre2(benchmark::State& state)
{
    Replace(state, [](const std::string& text) {
        const Pcre2Pattern pattern(c_numberPattern);
        std::string result(2 * text.size(), '\0');
        std::size_t length = result.size();
        pcre2_substitute(pattern.Code(), ToUnits(text), text.size(), 0, PCRE2_SUBSTITUTE_GLOBAL,
                         nullptr, nullptr, ToUnits(c_replacement), c_replacement.size(),
                         reinterpret_cast<PCRE2_UCHAR*>(result.data()), &length);
        result.resize(length);
        return result;
    });
}
BENCHMARK(BM_ReplaceAll_Pcre2);

void BM_ReplaceAll_Boost(benchmark::State& state)
{
    Replace(state, [](const std::string& text) {
        return boost::regex_replace(text, boost::regex(c_numberPattern), c_replacement,
                                    boost::regex_constants::format_literal);
    });
}
BENCHMARK(BM_ReplaceAll_Boost);

void BM_ReplaceAll_Re2(benchmark::State& state)
{
    Replace(state, [](std::string text) {
        RE2::GlobalReplace(&text, RE2(c_numberPattern), c_replacement);
        return text;
    });
}
BENCHMARK(BM_ReplaceAll_Re2);

void BM_ReplaceAll_Qt(benchmark::State& state)
{
    const QString original = QString::fromStdString(MakeLongText());
    const QString pattern = QString::fromStdString(c_numberPattern);
    const QString replacement = QString::fromStdString(c_replacement);
    QString text;
    for (auto _ : state) {
        text = original;
        text.replace(QRegularExpression(pattern), replacement);
    }
    if (text.toStdString() != MakeExpectedText())
        state.SkipWithError("wrong text");
}
BENCHMARK(BM_ReplaceAll_Qt);

void BM_ReplaceAll_Std(benchmark::State& state)
{
    Replace(state, [](const std::string& text) {
        return std::regex_replace(text, std::regex(c_numberPattern), c_replacement);
    });
}
BENCHMARK(BM_ReplaceAll_Std);

} // namespace
} // namespace OneMatch
