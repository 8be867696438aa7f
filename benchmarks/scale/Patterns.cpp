#include "toolkit/regExp/RegExp.h"

#include <memory>
#include <vector>

#include "scale/Operations.h"

namespace Scale {
namespace {

using Toolkit::RegExp;
using Toolkit::RegExpOptions;
using Text = TString<char>;

// Returns an operation that calls `use` with a RegExp for `pattern` and a string of words.
template <typename Use>
Operation MakeOperationOnSubject(const char* name, const std::vector<int>& lengths,
                                 const char* pattern, Use use)
{
    return {name, lengths, [pattern, use](int length) -> Run {
                const auto subject = std::make_shared<Text>(MakeWords<char>(length));
                return [subject, pattern, use] {
                    RegExp regExp(Text(pattern), RegExpOptions::None);
                    use(regExp, *subject);
                };
            }};
}

} // namespace

void AddPatternOperations(Operations& operations)
{
    operations.push_back(MakeOperationOnSubject(
        "RegExp IsMatch", c_sizes, "[0-9]+x",
        [](RegExp& regExp, const Text& text) { Require(!regExp.IsMatch(text)); }));
    operations.push_back(MakeOperationOnSubject(
        "RegExp Match", c_sizes, "(.*) (.*)$",
        [](RegExp& regExp, const Text& text) { Require(regExp.Match(text)->Success()); }));
    // The position at which the search continues is taken modulo 65,536, so longer texts would take
    // quadratic time.
    operations.push_back(MakeOperationOnSubject(
        "RegExp Replace", {600, 6'000, 20'000, 60'000}, "[aeiou]+",
        [](RegExp& regExp, const Text& text) { Require(!regExp.Replace("-", text, 0).empty()); }));
}

} // namespace Scale
