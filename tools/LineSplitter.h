#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace Tool {

/// Splits blocks of bytes into lines, which it passes on without their line feeds and without a
/// carriage return at their ends. A line of more than 1 MiB may be split into several.
class LineSplitter {
public:
    using LineHandler = std::function<void(std::string_view)>;

    /// Calls `onLine` with each line that ends in `bytes`, the next block.
    void Add(std::string_view bytes, const LineHandler& onLine)
    {
        while (!bytes.empty()) {
            const std::size_t end = bytes.find('\n');
            m_line.append(bytes.substr(0, end));
            if (end == std::string_view::npos && m_line.size() < c_maxLineLength)
                return;
            FinishLine(onLine);
            bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
        }
    }

    /// Call this after the last block: passes the last line to `onLine` if it has no line ending.
    void Finish(const LineHandler& onLine)
    {
        if (!m_line.empty())
            FinishLine(onLine);
    }

private:
    static constexpr std::size_t c_maxLineLength = 1 << 20;

    void FinishLine(const LineHandler& onLine)
    {
        if (!m_line.empty() && m_line.back() == '\r')
            m_line.pop_back();
        onLine(m_line);
        m_line.clear();
    }

    std::string m_line;
};

} // namespace Tool
