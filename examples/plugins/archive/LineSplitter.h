#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

/// Splits bytes that arrive in blocks into lines. A line ends at a line feed, or at a carriage
/// return and a line feed; the line ending is not part of the line.
class LineSplitter {
public:
    /// A longer line is split into lines of this size, in bytes.
    static constexpr std::size_t c_maxLineLength = 1 << 20;

    /// Calls `onLine` with each line that ends in the block.
    template <typename Action>
    void Add(const char* block, std::size_t count, Action onLine)
    {
        const char* const end = block + count;
        while (block != end) {
            const auto room = static_cast<std::ptrdiff_t>(c_maxLineLength - m_line.size());
            const char* const limit = block + std::min(room, end - block);
            const char* const lineEnd = std::find(block, limit, '\n');
            m_line.append(block, lineEnd);
            block = lineEnd;
            if (block != end && *block == '\n') {
                ++block;
                Finish(onLine);
            } else if (m_line.size() == c_maxLineLength) {
                Finish(onLine);
            }
        }
    }

    /// Calls `onLine` with the last line if it has no line ending. Call it after the last block.
    template <typename Action>
    void AddEnd(Action onLine)
    {
        if (!m_line.empty())
            Finish(onLine);
    }

private:
    template <typename Action>
    void Finish(Action onLine)
    {
        if (!m_line.empty() && m_line.back() == '\r')
            m_line.pop_back();
        onLine(m_line);
        m_line.clear();
    }

    std::string m_line;
};
