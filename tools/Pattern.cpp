#include "Pattern.h"

#include "Failure.h"
#include "VisibleText.h"

using namespace Toolkit;

namespace Tool {

Pattern::Pattern(const std::string& pattern)
    : m_expression(TString<char>(pattern), RegExpOptions::None), m_match(new MatchResult())
{
    m_match->pattern = pattern;
    try {
        m_expression.RegExp_compile(m_match);
    } catch (const smart_ptr<RegExpException>& exception) {
        throw Failure("no regular expression: " + pattern + ": " + exception->message);
    }
}

// A subject must be UTF-8, which visible text always is.
bool Pattern::Matches(std::string_view text) const
{
    m_match->subject.clear();
    AppendVisible(m_match->subject, text);
    try {
        m_expression.RegExp_exec(m_match, 0);
    } catch (const smart_ptr<RegExpException>& exception) {
        throw Failure("the search fails: " + exception->message);
    }
    return m_match->resultCode >= 0;
}

} // namespace Tool
