#include "LogFilter.h"

#include <algorithm>

namespace Tool {

bool LogFilter::Accepts(const LogRecord& record) const
{
    if (!record.header) {
        const bool needsHeader = m_severity || !m_functions.empty();
        return !needsHeader && Matches(record.text);
    }
    return AcceptsHeader(*record.header) && Matches(record.header->message);
}

bool LogFilter::AcceptsHeader(const LogHeader& header) const
{
    // Smaller numbers are more severe.
    if (m_severity && header.severity > *m_severity)
        return false;
    return m_functions.empty() ||
           std::find(m_functions.begin(), m_functions.end(), header.function) != m_functions.end();
}

bool LogFilter::Matches(std::string_view message) const
{
    return message.find(m_text) != std::string_view::npos &&
           (!m_pattern || m_pattern->Matches(message));
}

} // namespace Tool
