// Replacing groups with a list or a map joins the replacements with the parts of the subject that
// are outside the replaced groups.

#include "toolkit/regExp/RegExp.h"

#include "support/PatternInput.h"
#include "support/Require.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace Toolkit;

struct GroupReplacement {
    std::size_t begin;
    std::size_t end;
    std::string replacement;
};

// Joins the replacements with the rest of the subject. False if groups overlap or end before they
// begin: RegExp then replaces other ranges.
bool Join(const std::string& subject, const std::vector<GroupReplacement>& replacements,
          std::string& joined)
{
    std::size_t done = 0;
    for (const GroupReplacement& group : replacements) {
        if (group.begin < done || group.end < group.begin)
            return false;
        joined += subject.substr(done, group.begin - done) + group.replacement;
        done = group.end;
    }
    joined += subject.substr(done);
    return true;
}

// Returns the groups that took part in the match, with their replacements.
template <typename FindReplacement>
std::vector<GroupReplacement> ListReplacements(const MatchResult& result,
                                               const FindReplacement& findReplacement)
{
    std::vector<GroupReplacement> replacements;
    for (unsigned short i = 1; i < result.Count(); ++i) {
        const std::string* const replacement = findReplacement(i);
        if (replacement && result.ovector[2 * i] >= 0)
            replacements.push_back({static_cast<std::size_t>(result.ovector[2 * i]),
                                    static_cast<std::size_t>(result.ovector[2 * i + 1]),
                                    *replacement});
    }
    return replacements;
}

void RequireReplacedByList(RegExp& regExp, const MatchResult& result,
                           const std::vector<TString<char>>& list)
{
    const std::string replaced = regExp.Replace(list, result.subject);
    const auto findReplacement = [&](unsigned short group) -> const std::string* {
        return group <= list.size() ? &list[group - 1u] : &TString<char>::Empty();
    };
    std::string expected;
    if (Join(result.subject, ListReplacements(result, findReplacement), expected))
        Require(replaced == expected);
}

void RequireReplacedByMap(RegExp& regExp, const MatchResult& result,
                          RegExp::ReplacementMappedStrings map)
{
    const std::string replaced = regExp.Replace(map, result.subject);
    const auto findReplacement = [&](unsigned short group) -> const std::string* {
        const TString<char>& name = result[group]->name;
        if (name.empty())
            return nullptr;
        Require(map.count(name) == 1);
        return &map[name];
    };
    std::string expected;
    if (Join(result.subject, ListReplacements(result, findReplacement), expected))
        Require(replaced == expected);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    PatternInput input(data, size);
    const std::string pattern = AddLimits(input.ReadString(80));
    RegExp regExp(TString<char>(pattern), RegExpOptions::None);
    const TString<char> subject = input.ReadString(100);
    const TString<char> first = input.ReadString(10);
    const TString<char> second = input.ReadString(10);
    GetOutcome([&] {
        const smart_ptr<MatchResult> result = regExp.Match(subject);
        const std::vector<TString<char>> list = {first, second};
        if (!result->Success()) {
            Require(regExp.Replace(list, subject).empty());
            return std::string();
        }
        RequireReplacedByList(regExp, *result, list);
        RequireReplacedByMap(regExp, *result, {{"a", first}, {"b", second}});
        return std::string();
    });
    return 0;
}
