#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace Toolkit {

/// Pieces of text in the order in which they came.
///
/// They lie one behind the other in chunks that are used again: a piece that comes costs a copy
/// and, while the queue is emptied as fast as it is filled, no memory of the heap.
class LogPieceQueue {
public:
    LogPieceQueue();
    ~LogPieceQueue();

    LogPieceQueue(const LogPieceQueue&) = delete;
    LogPieceQueue& operator=(const LogPieceQueue&) = delete;

    void Push(std::wstring_view piece);

    bool IsEmpty() const { return m_used == 0; }

    /// Exchanges the pieces, and what is kept for later ones.
    void Swap(LogPieceQueue& other) noexcept;

    /// Calls `visit` with each piece, in order.
    template <typename Visitor>
    void ForEach(Visitor visit) const
    {
        for (std::size_t i = 0; i < m_used; ++i) {
            const Chunk& chunk = m_chunks[i];
            for (std::size_t at = 0; at < chunk.length;) {
                const std::wstring_view piece = chunk.PieceAt(at);
                visit(piece);
                at += c_headerLength + piece.size();
            }
        }
    }

    /// Forgets the pieces and keeps the chunks, within bounds, for later ones.
    void Clear();

    /// Forgets everything.
    void Release();

private:
    // The length of a piece stands before it.
    static constexpr std::size_t c_headerLength = sizeof(std::size_t) / sizeof(wchar_t);

    struct Chunk {
        explicit Chunk(std::size_t size);

        std::wstring_view PieceAt(std::size_t at) const;

        std::unique_ptr<wchar_t[]> text;
        std::size_t capacity;
        std::size_t length = 0;
    };

    Chunk& ChunkWithRoom(std::size_t length);

    std::vector<Chunk> m_chunks;
    std::size_t m_used = 0; // those before hold pieces, the others wait
};

} // namespace Toolkit
