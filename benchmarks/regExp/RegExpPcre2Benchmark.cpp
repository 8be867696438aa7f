// Compares the operations on PCRE 2 with its bare functions. The program has its own copy of the
// operations where the library uses PCRE 1.

#include "toolkit/regExp/RegExp.h"

#include <benchmark/benchmark.h>

#include <string>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

namespace {

using Toolkit::RegExp;
using Toolkit::RegExpOptions;

const std::string c_pattern = "(\\w+)@(\\w+)\\.([a-z]+)";
const std::string c_subject = "please answer to ann@example.org by noon";

PCRE2_SPTR ToUnits(const std::string& text)
{
    return reinterpret_cast<PCRE2_SPTR>(text.data());
}

void BM_Pcre2IsMatch_Toolkit(benchmark::State& state)
{
    const RegExp regExp(TString<char>(c_pattern), RegExpOptions::None);
    const TString<char> subject = c_subject;
    for (auto _ : state) {
        if (!regExp.IsMatch(subject))
            state.SkipWithError("no match");
    }
}
BENCHMARK(BM_Pcre2IsMatch_Toolkit);

void BM_Pcre2Match_Toolkit(benchmark::State& state)
{
    const RegExp regExp(TString<char>(c_pattern), RegExpOptions::None);
    const TString<char> subject = c_subject;
    for (auto _ : state) {
        const auto result = regExp.Match(subject);
        if (result->Count() != 4 || result->groups[3]->value != "org")
            state.SkipWithError("wrong groups");
    }
}
BENCHMARK(BM_Pcre2Match_Toolkit);

// Compiles and searches, like a program that uses PCRE 2 directly.
int MatchByPcre2(pcre2_match_data*& offsets)
{
    int error = 0;
    std::size_t place = 0;
    pcre2_code* const code =
        pcre2_compile(ToUnits(c_pattern), c_pattern.size(), PCRE2_UTF, &error, &place, nullptr);
    offsets = pcre2_match_data_create_from_pattern(code, nullptr);
    const int count =
        pcre2_match(code, ToUnits(c_subject), c_subject.size(), 0, 0, offsets, nullptr);
    pcre2_code_free(code);
    return count;
}

void BM_Pcre2IsMatch_Pcre2(benchmark::State& state)
{
    for (auto _ : state) {
        pcre2_match_data* offsets = nullptr;
        if (MatchByPcre2(offsets) != 4)
            state.SkipWithError("no match");
        pcre2_match_data_free(offsets);
    }
}
BENCHMARK(BM_Pcre2IsMatch_Pcre2);

void BM_Pcre2Match_Pcre2(benchmark::State& state)
{
    for (auto _ : state) {
        pcre2_match_data* offsets = nullptr;
        if (MatchByPcre2(offsets) != 4 ||
            c_subject.compare(pcre2_get_ovector_pointer(offsets)[6], 3, "org") != 0)
            state.SkipWithError("wrong groups");
        pcre2_match_data_free(offsets);
    }
}
BENCHMARK(BM_Pcre2Match_Pcre2);

} // namespace
