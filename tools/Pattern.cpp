#include "Pattern.h"

#include "Failure.h"
#include "VisibleText.h"

using namespace Toolkit;

namespace Tool {
namespace {

// If there is no error text, compiling failed before the engine saw the pattern: out of memory.
std::string DescribeCompileError(const MatchResult& match, const RegExpException& exception)
{
    if (!match.errorText)
        return exception.message;
    return std::string(match.errorText) + " at offset " + std::to_string(match.errorOffset);
}

// The codes are those of pcreapi(3), "Error return values from pcre_exec()".
std::string DescribeSearchError(int code)
{
    constexpr int matchLimitReached = -8;

    return code == matchLimitReached ? "too many steps" : "error " + std::to_string(code);
}

} // namespace

Pattern::Pattern(const std::string& pattern)
    : m_expression(TString<char>(pattern), RegExpOptions::None), m_match(new MatchResult())
{
    m_match->pattern = pattern;
    try {
        m_expression.RegExp_compile(m_match);
    } catch (const smart_ptr<RegExpException>& exception) {
        throw Failure("invalid regular expression '" + pattern +
                      "': " + DescribeCompileError(*m_match, *exception));
    }
}

// The engine requires UTF-8, which the visible form always is.
bool Pattern::Matches(std::string_view text) const
{
    m_match->subject.clear();
    AppendVisible(m_match->subject, text);
    try {
        m_expression.RegExp_exec(m_match, 0);
    } catch (const smart_ptr<RegExpException>&) {
        throw Failure("the search for '" + m_match->pattern +
                      "' failed: " + DescribeSearchError(m_match->resultCode));
    }
    return m_match->resultCode >= 0;
}

} // namespace Tool
