#include "toolkit/core/TString.h"

#include <benchmark/benchmark.h>
#include <wx/string.h>

#include <QString>
#include <algorithm>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>
#include <wchar.h>

namespace Toolkit {
namespace {

// Returns words of one to eleven letters, separated by commas.
std::wstring MakeCommaLine(benchmark::State& state)
{
    std::wstring line;
    const auto length = static_cast<std::size_t>(state.range(0));
    for (std::size_t word = 0; line.size() < length; ++word)
        line.append(1 + word * 7 % 11, static_cast<wchar_t>(L'a' + word % 26)).push_back(L',');
    line.resize(length);
    return line;
}

// Checks the number of tokens and sets the throughput.
void FinishTokens(benchmark::State& state, const std::wstring& line, std::size_t count)
{
    const auto commas = static_cast<std::size_t>(std::count(line.begin(), line.end(), L','));
    if (count != commas + 1)
        state.SkipWithError("wrong number of tokens");
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void BM_Tokens_Toolkit(benchmark::State& state)
{
    const TString<wchar_t> line = MakeCommaLine(state);
    std::vector<TString<wchar_t>> tokens;
    for (auto _ : state)
        line.GetTokens(L",", tokens, false);
    FinishTokens(state, line, tokens.size());
}
BENCHMARK(BM_Tokens_Toolkit)->Arg(60)->Arg(100'000);

void BM_Tokens_BoostSplit(benchmark::State& state)
{
    const std::wstring line = MakeCommaLine(state);
    std::vector<std::wstring> tokens;
    for (auto _ : state)
        boost::split(tokens, line, boost::is_any_of(L","));
    FinishTokens(state, line, tokens.size());
}
BENCHMARK(BM_Tokens_BoostSplit)->Arg(60)->Arg(100'000);

// Splits at two delimiters, into a new vector each time.
void BM_FreshTokens_Toolkit(benchmark::State& state)
{
    const TString<wchar_t> line = MakeCommaLine(state);
    std::size_t count = 0;
    for (auto _ : state) {
        std::vector<TString<wchar_t>> tokens;
        line.GetTokens(L",;", tokens, false);
        count = tokens.size();
    }
    FinishTokens(state, line, count);
}
BENCHMARK(BM_FreshTokens_Toolkit)->Arg(60)->Arg(100'000);

void BM_FreshTokens_BoostSplit(benchmark::State& state)
{
    const std::wstring line = MakeCommaLine(state);
    std::size_t count = 0;
    for (auto _ : state) {
        std::vector<std::wstring> tokens;
        boost::split(tokens, line, boost::is_any_of(L",;"));
        count = tokens.size();
    }
    FinishTokens(state, line, count);
}
BENCHMARK(BM_FreshTokens_BoostSplit)->Arg(60)->Arg(100'000);

// Two strings that differ only in case.
struct CasePair {
    explicit CasePair(benchmark::State& state)
    {
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            const auto letter = static_cast<wchar_t>(L'a' + i * 7 % 26);
            const auto capital = static_cast<wchar_t>(letter - 0x20);
            left.push_back(i % 3 == 0 ? capital : letter);
            right.push_back(i % 2 == 0 ? capital : letter);
        }
    }

    TString<wchar_t> left;
    TString<wchar_t> right;
};

void BM_CompareNoCase_Toolkit(benchmark::State& state)
{
    CasePair texts(state);
    int order = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(texts.right.data());
        benchmark::DoNotOptimize(order = texts.left.compareNoCase(texts.right));
    }
    if (order != 0)
        state.SkipWithError("wrong order");
}
BENCHMARK(BM_CompareNoCase_Toolkit)->Arg(32)->Arg(100'000);

void BM_CompareNoCase_wcscasecmp(benchmark::State& state)
{
    CasePair texts(state);
    int order = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(texts.right.data());
        benchmark::DoNotOptimize(order = ::wcscasecmp(texts.left.c_str(), texts.right.c_str()));
    }
    if (order != 0)
        state.SkipWithError("wrong order");
}
BENCHMARK(BM_CompareNoCase_wcscasecmp)->Arg(32)->Arg(100'000);

// Returns a string with one occurrence of the needle, near its end.
std::wstring MakeHaystack(benchmark::State& state)
{
    const std::wstring words = L"The Quick Brown Fox jumps over the lazy dog, ";
    std::wstring text;
    while (std::ssize(text) < state.range(0))
        text += words;
    text.resize(static_cast<std::size_t>(state.range(0)));
    return text + L"A Needle in it";
}

constexpr wchar_t c_needle[] = L"nEEDLE IN";

void BM_HasSubstring_Toolkit(benchmark::State& state)
{
    const TString<wchar_t> text = MakeHaystack(state);
    const TString<wchar_t> needle = c_needle;
    bool found = false;
    for (auto _ : state)
        benchmark::DoNotOptimize(found = text.HasSubstring(needle));
    if (!found)
        state.SkipWithError("not found");
}
BENCHMARK(BM_HasSubstring_Toolkit)->Arg(50)->Arg(1000)->Arg(100'000);

void BM_HasSubstring_QString(benchmark::State& state)
{
    const QString text = QString::fromStdWString(MakeHaystack(state));
    const QString needle = QString::fromWCharArray(c_needle);
    bool found = false;
    for (auto _ : state)
        benchmark::DoNotOptimize(found = text.contains(needle, Qt::CaseInsensitive));
    if (!found)
        state.SkipWithError("not found");
}
BENCHMARK(BM_HasSubstring_QString)->Arg(50)->Arg(1000)->Arg(100'000);

struct Replacement {
    const wchar_t* from;
    const wchar_t* to;
};

constexpr Replacement c_replacements[] = {
    {L"key", L"dom"},    // of the same length
    {L"key", L"longer"}, // longer
    {L"key", L""},       // empty: the text before and after it is joined
    {L"key", L"ke"},     // may become part of a new "key"
};

constexpr std::size_t c_hitCount = 500;

// Returns 10,000 characters in which "key" occurs 500 times.
std::wstring MakeTextWithHits()
{
    std::wstring text;
    for (std::size_t hit = 0; hit < c_hitCount; ++hit)
        text += L"seventeen others-key";
    return text;
}

std::size_t ComputeReplacedLength(std::size_t textLength, const Replacement& replacement)
{
    return textLength - c_hitCount * ::wcslen(replacement.from) +
           c_hitCount * ::wcslen(replacement.to);
}

void BM_Replace_Toolkit(benchmark::State& state)
{
    const Replacement& replacement = c_replacements[state.range(0)];
    const TString<wchar_t> text = MakeTextWithHits();
    const TString<wchar_t> from = replacement.from;
    const TString<wchar_t> to = replacement.to;
    const std::size_t expectedLength = ComputeReplacedLength(text.size(), replacement);
    for (auto _ : state) {
        TString<wchar_t> changed = text;
        changed.Replace(from, to);
        benchmark::DoNotOptimize(changed.data());
        if (changed.size() != expectedLength)
            state.SkipWithError("wrong length");
    }
}
BENCHMARK(BM_Replace_Toolkit)->DenseRange(0, 3);

void BM_Replace_wxString(benchmark::State& state)
{
    const Replacement& replacement = c_replacements[state.range(0)];
    const wxString text = MakeTextWithHits();
    const wxString from = replacement.from;
    const wxString to = replacement.to;
    const std::size_t expectedLength = ComputeReplacedLength(text.size(), replacement);
    for (auto _ : state) {
        wxString changed = text;
        changed.Replace(from, to);
        benchmark::DoNotOptimize(changed.wc_str());
        if (changed.size() != expectedLength)
            state.SkipWithError("wrong length");
    }
}
BENCHMARK(BM_Replace_wxString)->DenseRange(0, 3);

} // namespace
} // namespace Toolkit
