#pragma once

#include "toolkit/regExp/RegExp.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

/// Benchmarks that find one match in a short string. Like the library, every peer compiles the
/// pattern for each operation.
namespace OneMatch {

inline const std::string c_pattern = "(\\w+)@(\\w+)\\.([a-z]+)";
inline const std::string c_subject = "please answer to ann@example.org by noon";

/// The whole match and its three groups.
constexpr int c_groupCount = 4;

inline void RunIsMatch(benchmark::State& state)
{
    const Toolkit::RegExp regExp(TString<char>(c_pattern), Toolkit::RegExpOptions::None);
    const TString<char> subject = c_subject;
    for (auto _ : state) {
        if (!regExp.IsMatch(subject))
            state.SkipWithError("no match");
    }
}

inline void RunMatch(benchmark::State& state)
{
    const Toolkit::RegExp regExp(TString<char>(c_pattern), Toolkit::RegExpOptions::None);
    const TString<char> subject = c_subject;
    for (auto _ : state) {
        const auto result = regExp.Match(subject);
        if (result->Count() != c_groupCount || result->groups[3]->value != "org")
            state.SkipWithError("wrong groups");
    }
}

inline PCRE2_SPTR ToUnits(const std::string& text)
{
    return reinterpret_cast<PCRE2_SPTR>(text.data());
}

/// A pattern, compiled as in a program that uses PCRE 2 directly.
class Pcre2Pattern {
public:
    explicit Pcre2Pattern(const std::string& pattern)
    {
        int error = 0;
        std::size_t errorOffset = 0;
        m_code = pcre2_compile(ToUnits(pattern), pattern.size(), PCRE2_UTF, &error, &errorOffset,
                               nullptr);
    }
    ~Pcre2Pattern() { pcre2_code_free(m_code); }

    Pcre2Pattern(const Pcre2Pattern&) = delete;
    Pcre2Pattern& operator=(const Pcre2Pattern&) = delete;

    const pcre2_code* Code() const { return m_code; }

    /// Searches `c_subject`; returns the number of groups, including the whole match.
    int Search(pcre2_match_data* offsets) const
    {
        return pcre2_match(m_code, ToUnits(c_subject), c_subject.size(), 0, 0, offsets, nullptr);
    }

private:
    pcre2_code* m_code;
};

/// Whether the last group begins at "org".
inline bool HasLastGroup(pcre2_match_data* offsets)
{
    const std::size_t begin = pcre2_get_ovector_pointer(offsets)[2 * (c_groupCount - 1)];
    return c_subject.compare(begin, 3, "org") == 0;
}

} // namespace OneMatch
