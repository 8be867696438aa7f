// Compares RegExp on PCRE 2 with the bare functions of PCRE 2. If the library uses PCRE 1, the
// program has its own copy of RegExp.

#include "regExp/OneMatch.h"

namespace OneMatch {
namespace {

BENCHMARK(RunIsMatch)->Name("BM_Pcre2IsMatch_Toolkit");
BENCHMARK(RunMatch)->Name("BM_Pcre2Match_Toolkit");

void BM_Pcre2IsMatch_Pcre2(benchmark::State& state)
{
    for (auto _ : state) {
        const Pcre2Pattern pattern(c_pattern);
        pcre2_match_data* const offsets =
            pcre2_match_data_create_from_pattern(pattern.Code(), nullptr);
        if (pattern.Search(offsets) != c_groupCount)
            state.SkipWithError("no match");
        pcre2_match_data_free(offsets);
    }
}
BENCHMARK(BM_Pcre2IsMatch_Pcre2);

void BM_Pcre2Match_Pcre2(benchmark::State& state)
{
    for (auto _ : state) {
        const Pcre2Pattern pattern(c_pattern);
        pcre2_match_data* const offsets =
            pcre2_match_data_create_from_pattern(pattern.Code(), nullptr);
        if (pattern.Search(offsets) != c_groupCount || !HasLastGroup(offsets))
            state.SkipWithError("wrong groups");
        pcre2_match_data_free(offsets);
    }
}
BENCHMARK(BM_Pcre2Match_Pcre2);

} // namespace
} // namespace OneMatch
