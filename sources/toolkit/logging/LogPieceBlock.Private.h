#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Toolkit {

/// Collects pieces of log text, as UTF-8, in a block that is written to the file with one system
/// call.
///
/// A process killed during a write leaves what the kernel has copied so far, and the kernel checks
/// for the signal only between two pages of the file: the part of a write that lies in one page is
/// written as a whole or not at all. So a block ends with the last whole piece before the end of a
/// page. A piece that crosses the end of a page comes first in its block. Only such a piece can be
/// cut, at the end of a page, and it is then the last one written. No other division into writes
/// prevents that, because several pages cannot be written atomically.
class LogPieceBlock {
public:
    explicit LogPieceBlock(std::size_t pageSize);

    /// Empties the block, which will be written at `offset` in the file.
    void Begin(long long offset);

    /// Appends `piece`. Returns false if the block has no room for it: write the block, call
    /// Begin() and repeat the call. The first piece always has room. Drops a piece that UTF-8
    /// cannot encode or that does not fit into memory, and returns true. A narrow piece is Latin-1.
    bool Append(std::wstring_view piece);
    bool Append(std::string_view piece);

    bool IsEmpty() const { return m_bytes.empty(); }
    const char* Data() const { return m_bytes.data(); }
    std::size_t Size() const { return m_bytes.size(); }

private:
    bool KeepIfItFits(std::size_t pieceBegin);

    std::size_t m_pageSize;
    std::size_t m_pageOffset = 0; // of the block within its first page
    std::size_t m_maxSize = 0;    // of the block; set by its first piece
    std::string m_bytes;
};

} // namespace Toolkit
