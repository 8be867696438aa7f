#pragma once

#include <string_view>

namespace Toolkit::Base {

/// Takes the lines of a text one after the other. A line ends at a line feed, a carriage return or
/// both; the last one may have no line end.
///
///     for (Base::LineSplitter lines(text); lines.TakeLine();)
///         Use(lines.Line());
class LineSplitter {
public:
    /// `text` must outlive the lines.
    explicit LineSplitter(std::string_view text);

    /// Moves to the next line; the first call moves to the first line. False when there is none.
    bool TakeLine();

    /// The line without its end.
    std::string_view Line() const { return m_line; }

    /// The line feed, the carriage return or both after the line; empty after a last line without.
    std::string_view LineEnd() const { return m_lineEnd; }

private:
    std::string_view m_rest;
    std::string_view m_line;
    std::string_view m_lineEnd;
    std::size_t m_feed; // distance to the next line feed in m_rest; npos when there is none
};

} // namespace Toolkit::Base
