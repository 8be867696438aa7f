#pragma once

#include <toolkit/core/TString.h>
#include <toolkit/encoding/UTF8.h>
#include <toolkit/regExp/RegExp.h>

/// A regular expression that is compiled once and matched against many lines.
class LineSearch {
public:
    /// Throws a `smart_ptr<RegExpException>` if the pattern is invalid.
    explicit LineSearch(const TString<wchar_t>& pattern)
        : m_pattern(pattern, Toolkit::RegExpOptions::None), m_match(new Toolkit::MatchResult())
    {
        m_match->pattern = Toolkit::UTF8::ToUTF8(pattern);
        m_pattern.RegExp_compile(m_match);
    }

    /// Throws a `smart_ptr<RegExpException>` if `line` is not UTF-8 or takes too many matching
    /// steps.
    bool Matches(const TString<char>& line)
    {
        m_match->subject = line;
        m_pattern.RegExp_exec(m_match, 0);
        return m_match->Success();
    }

private:
    const Toolkit::RegExp m_pattern;
    const Toolkit::smart_ptr<Toolkit::MatchResult> m_match;
};
