// Replacing whole matches gives the same result as replacing them step by step.

#include "toolkit/regExp/RegExp.h"

#include "support/PatternInput.h"
#include "support/Require.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using namespace Toolkit;

// PCRE_NOTBOL, PCRE_NOTEOL and PCRE_NOTEMPTY, as in RegExp::Replace().
constexpr int c_options = 0x580;

// Allows fewer steps for a long string, because each step searches it.
constexpr int GetMaxSteps(std::size_t length)
{
    return length > 1000 ? 5 : 50;
}

// Replaces step by step; false if that takes too many steps.
bool ReplaceInSteps(RegExp& regExp, const std::string& pattern, const std::string& replacement,
                    TString<char>& text)
{
    const smart_ptr<MatchResult> result(new MatchResult());
    result->subject = text;
    result->pattern = pattern;
    result->execOptions = c_options;
    regExp.RegExp_compile(result);
    regExp.RegExp_exec(result, 0);
    const int maxSteps = GetMaxSteps(text.size());
    for (int steps = 0; result->resultCode > 0; ++steps) {
        if (steps == maxSteps)
            return false;
        regExp.RegExp_replace(result, 0, text, replacement, 0);
        result->subject = text;
        const std::size_t start = static_cast<std::size_t>(result->ovector[0]) + replacement.size();
        regExp.RegExp_exec(result, static_cast<unsigned short>(start));
    }
    return true;
}

// Whether the steps are few and cheap enough to run without limits.
bool IsCheap(RegExp& regExp, const std::string& pattern, const std::string& replacement,
             TString<char> text)
{
    bool isDone = false;
    const PatternOutcome outcome = GetOutcome([&] {
        isDone = ReplaceInSteps(regExp, AddLimits(pattern), replacement, text);
        return std::string();
    });
    const bool isLimited =
        outcome.message.rfind("-8gExp", 0) == 0 || outcome.message.rfind("-21Exp", 0) == 0;
    return !isLimited && (isDone || !outcome.message.empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    PatternInput input(data, size);
    const std::string pattern = input.ReadString(60);
    const TString<char> replacement = input.ReadString(20);
    // Offsets into the long string exceed 16 bits. Patterns with repetitions use only the short
    // string, because a repetition could read the long one again from each position.
    const bool isLong =
        input.ReadString(1) == "L" && pattern.find_first_of("*+{") == std::string::npos;
    const TString<char> subject = std::string(isLong ? 65520 : 0, '.') + input.ReadString(60);
    RegExp regExp(TString<char>(pattern), RegExpOptions::None);
    if (!IsCheap(regExp, pattern, replacement, subject))
        return 0;

    const PatternOutcome steps = GetOutcome([&] {
        TString<char> text = subject;
        Require(ReplaceInSteps(regExp, pattern, replacement, text));
        return std::string(text);
    });
    const PatternOutcome whole =
        GetOutcome([&] { return std::string(regExp.Replace(replacement, subject, 0)); });

    Require(steps == whole);
    return 0;
}
