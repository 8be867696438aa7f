#pragma once

#include "toolkit/logging/LogPieceChunk.Private.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace Toolkit {

/// Pieces of log text in the order in which they came.
///
/// They lie in chunks that are used again: while the queue is emptied as fast as it is filled, a
/// piece costs a copy and no memory of the heap.
class LogPieceQueue {
public:
    LogPieceQueue();
    ~LogPieceQueue();

    LogPieceQueue(const LogPieceQueue&) = delete;
    LogPieceQueue& operator=(const LogPieceQueue&) = delete;

    /// Throws `std::bad_alloc` and changes nothing when out of memory.
    void Push(std::wstring_view piece);

    bool IsEmpty() const { return m_used == 0; }

    /// Exchanges the pieces, and what is kept for later ones.
    void Swap(LogPieceQueue& other) noexcept;

    /// Calls `visit` with each piece, in order, as `LogPieceChunk::ForEach` does.
    template <typename Visitor>
    void ForEach(Visitor visit) const
    {
        for (std::size_t i = 0; i < m_used; ++i)
            m_chunks[i].ForEach(visit);
    }

    /// Forgets the pieces and keeps the chunks, within bounds, for later ones.
    void Clear();

    /// Forgets everything.
    void Release();

private:
    LogPieceChunk& NextChunk(std::size_t capacity);

    std::vector<LogPieceChunk> m_chunks;
    std::size_t m_used = 0; // those before hold pieces, the others wait
};

} // namespace Toolkit
