#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Toolkit {

/// Collects pieces of log text, as UTF-8, in a block that is written to the file with one system
/// call.
///
/// If the process is killed during a write, the file keeps what the kernel has copied so far. The
/// kernel checks for SIGKILL only between two pages, so the bytes of a write that lie in one page
/// are written completely or not at all. A block therefore holds only whole pieces, and ends at the
/// latest with the page in which its first piece ends. A piece that crosses the end of a page comes
/// first in its block. Only such a piece can be cut, at the end of a page, and nothing after it is
/// written. This cannot be avoided, because no write to several pages is atomic.
class LogPieceBlock {
public:
    explicit LogPieceBlock(std::size_t pageSize);

    /// Starts an empty block, which will be written at `offset` in the file. Call it before the
    /// first Append().
    void Begin(long long offset);

    /// Appends `piece`. Returns false if it does not fit: then write the block, call Begin() and
    /// append the piece again. The first piece always fits. A piece that UTF-8 cannot encode, or
    /// for which memory runs out, is dropped, and the result is true.
    bool Append(std::wstring_view piece);
    /// The same for a piece in Latin-1.
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
