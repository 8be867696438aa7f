#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Toolkit {

/// Collects pieces of log text, as UTF-8, in a block that is written to the file at once.
///
/// A process killed during a write leaves what the kernel has copied so far, and the kernel checks
/// for the signal only between two pages of the file: the part of a write that lies in one page is
/// written as a whole or not at all. So a block ends with the last whole piece before the end of a
/// page. A piece that crosses the end of a page comes first in its block. Only such a piece can be
/// cut, at the end of the page, as the last one in the file. Its two pages cannot be written at
/// once, so no order of writes prevents that.
class LogPieceBlock {
public:
    explicit LogPieceBlock(std::size_t pageSize);

    /// Empties the block, which will be written at `offset` in the file.
    void Begin(long long offset);

    /// Appends `piece`; false when it does not fit, and the block must be written first. The first
    /// piece always fits. Leaves out a piece that UTF-8 cannot encode or that does not fit into
    /// memory. The bytes of a narrow piece are characters up to U+00FF.
    bool Append(std::wstring_view piece);
    bool Append(std::string_view piece);

    bool IsEmpty() const { return m_bytes.empty(); }
    const char* Data() const { return m_bytes.data(); }
    std::size_t Size() const { return m_bytes.size(); }

private:
    bool KeepFrom(std::size_t oldSize);

    std::size_t m_pageSize;
    std::size_t m_pageOffset = 0; // where in its page the block begins
    std::size_t m_limit = 0;      // largest size of the block; set by the first piece
    std::string m_bytes;
};

} // namespace Toolkit
