#include "toolkit/base/LineSplitter.h"

namespace Toolkit::Base {

LineSplitter::LineSplitter(std::string_view text)
    : m_rest(text), m_lineFeedDistance(text.find('\n'))
{
}

// Keeps the position of the next line feed: in text whose lines end with carriage returns only,
// searching for it again in each line would take quadratic time.
bool LineSplitter::MoveToNextLine()
{
    if (m_rest.empty())
        return false;
    m_line = m_rest.substr(0, m_lineFeedDistance);
    const std::size_t carriageReturn = m_line.find('\r');
    const bool endsWithCr = carriageReturn != std::string_view::npos;
    if (endsWithCr)
        m_line = m_line.substr(0, carriageReturn);

    const bool endsWithCrLf = endsWithCr && m_line.size() + 1 == m_lineFeedDistance;
    m_lineEnd = m_rest.substr(m_line.size(), endsWithCrLf ? 2 : 1);
    const std::size_t taken = m_line.size() + m_lineEnd.size();
    m_rest.remove_prefix(taken);
    if (!endsWithCr || endsWithCrLf)
        m_lineFeedDistance = m_rest.find('\n');
    else if (m_lineFeedDistance != std::string_view::npos)
        m_lineFeedDistance -= taken;
    return true;
}

} // namespace Toolkit::Base
