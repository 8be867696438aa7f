#pragma once

#include <string>
#include <string_view>
#include <toolkit/regExp/RegExp.h>

namespace Tool {

/// A regular expression, compiled once and searched in many texts.
class Pattern {
public:
    /// Throws a `Failure` when `pattern` is invalid.
    explicit Pattern(const std::string& pattern);

    /// Searches in the visible form of `text`, which may contain any bytes. Throws a `Failure` when
    /// the search takes too many steps.
    bool Matches(std::string_view text) const;

private:
    Toolkit::RegExp m_expression;
    Toolkit::smart_ptr<Toolkit::MatchResult> m_match; // with the compiled pattern
};

} // namespace Tool
