// IsMatch() and Match() have the same outcome, errors included. Each group is the part of the
// subject at its offsets, and each name leads to its group.

#include "toolkit/regExp/RegExp.h"

#include "support/PatternInput.h"
#include "support/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using namespace Toolkit;

constexpr std::size_t c_maxPatternLength = 80;
constexpr std::size_t c_maxSubjectLength = 200;

void RequireValidGroups(const MatchResult& result)
{
    const auto length = static_cast<int>(result.subject.size());
    Require(static_cast<int>(result.Count()) == std::max(result.resultCode, 0));
    for (unsigned short i = 0; i < result.Count(); ++i) {
        const int begin = result.ovector[2 * i];
        const int end = result.ovector[2 * i + 1];
        Require(begin >= -1 && begin <= length && end >= -1 && end <= length);
        const TString<char>& value = result[i]->value;
        Require(static_cast<int>(value.size()) == std::max(end - begin, 0));
        Require(value.empty() ||
                result.subject.compare(static_cast<std::size_t>(begin), value.size(), value) == 0);
    }
    // An empty name is valid: PCRE accepts (?'').
    for (const auto& [name, number] : result.names)
        Require(result[static_cast<unsigned short>(number)]->name == name);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    PatternInput input(data, size);
    const RegExp regExp(TString<char>(AddLimits(input.ReadString(c_maxPatternLength))),
                        RegExpOptions::None);
    const TString<char> subject = input.ReadString(c_maxSubjectLength);

    const PatternOutcome isMatchOutcome =
        GetOutcome([&] { return std::string(regExp.IsMatch(subject) ? "yes" : "no"); });
    const PatternOutcome matchOutcome = GetOutcome([&] {
        const smart_ptr<MatchResult> result = regExp.Match(subject);
        RequireValidGroups(*result);
        // More groups than `ovector` holds, 0, count as no match, as in IsMatch().
        return std::string(result->resultCode > 0 ? "yes" : "no");
    });

    Require(isMatchOutcome == matchOutcome);
    return 0;
}
