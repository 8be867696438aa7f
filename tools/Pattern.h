#pragma once

#include <string>
#include <string_view>
#include <toolkit/regExp/RegExp.h>

namespace Tool {

/// A regular expression, compiled once and matched against many strings.
class Pattern {
public:
    /// Throws a `Failure` if `pattern` is invalid.
    explicit Pattern(const std::string& pattern);

    /// Searches `text`, which may contain any bytes, in the form of AppendVisible(). Throws a
    /// `Failure` if the search fails, for example because it takes too many steps.
    bool Matches(std::string_view text) const;

private:
    Toolkit::RegExp m_expression;
    Toolkit::smart_ptr<Toolkit::MatchResult> m_match; // contains the compiled pattern
};

} // namespace Tool
