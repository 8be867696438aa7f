#pragma once

#include "toolkit/logging/LogPieceChunk.Private.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace Toolkit {

/// Pieces of log text, in the order in which they arrived.
///
/// The chunks that store them are reused: while the queue is emptied as fast as it is filled, a
/// piece costs a copy and no allocation.
class LogPieceQueue {
public:
    LogPieceQueue();
    ~LogPieceQueue();

    LogPieceQueue(const LogPieceQueue&) = delete;
    LogPieceQueue& operator=(const LogPieceQueue&) = delete;

    /// When out of memory, throws `std::bad_alloc` and adds nothing.
    void Push(std::wstring_view piece);

    bool IsEmpty() const { return m_used == 0; }

    /// Exchanges the pieces and the spare chunks.
    void Swap(LogPieceQueue& other) noexcept;

    /// Calls `visit` with each piece, in order, as `LogPieceChunk::VisitPieces` does.
    template <typename Visitor>
    void VisitPieces(Visitor visit) const
    {
        for (std::size_t i = 0; i < m_used; ++i)
            m_chunks[i].VisitPieces(visit);
    }

    /// Removes the pieces, but keeps up to 256 chunks (16 MiB) for later ones.
    void Clear();

    /// Removes the pieces and frees the chunks.
    void Release();

private:
    LogPieceChunk& GetNextChunk(std::size_t capacity);

    std::vector<LogPieceChunk> m_chunks;
    std::size_t m_used = 0; // number of chunks with pieces; the others are spare
};

} // namespace Toolkit
