#include "LogFilter.h"

#include <algorithm>

#include "Failure.h"
#include "VisibleText.h"

using namespace Toolkit;

namespace Tool {

void LogFilter::SetPattern(const std::string& pattern)
try {
    if (pattern.empty())
        return;
    m_pattern.emplace(TString<char>(pattern), RegExpOptions::None);
    m_match = smart_ptr<MatchResult>(new MatchResult());
    m_match->pattern = pattern;
    m_pattern->RegExp_compile(m_match);
} catch (const smart_ptr<RegExpException>& exception) {
    throw Failure("no regular expression: " + pattern + ": " + exception->message);
}

bool LogFilter::Accepts(const LogRecord& record)
{
    if (!record.header) {
        const bool isAboutHeader = m_severity || !m_functions.empty();
        return !isAboutHeader && Matches(record.text);
    }
    return AcceptsHeader(*record.header) && Matches(record.header->message);
}

bool LogFilter::AcceptsHeader(const LogHeader& header) const
{
    const bool isSevere = !m_severity || header.severity <= *m_severity;
    return isSevere && (m_functions.empty() || std::find(m_functions.begin(), m_functions.end(),
                                                         header.function) != m_functions.end());
}

bool LogFilter::Matches(std::string_view message)
{
    if (message.find(m_text) == std::string_view::npos)
        return false;
    if (!m_pattern)
        return true;
    // Visible text is always UTF-8, and a subject must be.
    m_match->subject.clear();
    AppendVisible(m_match->subject, message);
    try {
        m_pattern->RegExp_exec(m_match, 0);
    } catch (const smart_ptr<RegExpException>& exception) {
        throw Failure("the regular expression fails: " + exception->message);
    }
    return m_match->resultCode >= 0;
}

} // namespace Tool
