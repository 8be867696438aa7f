#pragma once

#include <string_view>

namespace Toolkit::Base {

/// Splits a text into lines. A line ends with a line feed, a carriage return or both; the last line
/// may have no line end.
///
///     for (Base::LineSplitter lines(text); lines.TakeLine();)
///         Use(lines.Line());
class LineSplitter {
public:
    /// `text` must outlive the lines.
    explicit LineSplitter(std::string_view text);

    /// Moves to the next line, and to the first line in the first call. False after the last line.
    bool TakeLine();

    /// The line without its end.
    std::string_view Line() const { return m_line; }

    /// What ends the line: a line feed, a carriage return or both. Empty if a last line has no end.
    std::string_view LineEnd() const { return m_lineEnd; }

private:
    std::string_view m_rest;
    std::string_view m_line;
    std::string_view m_lineEnd;
    std::size_t m_feed; // distance to the next line feed in m_rest; npos when there is none
};

} // namespace Toolkit::Base
