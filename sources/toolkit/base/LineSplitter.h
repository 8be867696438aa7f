#pragma once

#include <cstddef>
#include <string_view>

namespace Toolkit::Base {

/// Splits text into lines. A line ends with a line feed, a carriage return, or a carriage return
/// and a line feed; the last line may have no line ending.
///
///     for (Base::LineSplitter lines(text); lines.MoveToNextLine();)
///         Use(lines.Line());
class LineSplitter {
public:
    /// The characters of `text` must outlive this object and the lines that it returns.
    explicit LineSplitter(std::string_view text);

    /// Moves to the next line; the first call moves to the first line. Returns false after the last
    /// line.
    bool MoveToNextLine();

    /// Returns the current line without its line ending.
    std::string_view Line() const { return m_line; }

    /// Returns the one or two characters that end the current line; empty if it is the last line
    /// and has no line ending.
    std::string_view LineEnd() const { return m_lineEnd; }

private:
    std::string_view m_rest;
    std::string_view m_line;
    std::string_view m_lineEnd;
    std::size_t m_lineFeedDistance; // to the next line feed in m_rest; npos if there is none
};

} // namespace Toolkit::Base
