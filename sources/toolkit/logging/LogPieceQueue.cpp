#include "toolkit/logging/LogPieceQueue.Private.h"

#include <algorithm>
#include <utility>

namespace Toolkit {
namespace {

constexpr std::size_t c_chunkSize = 65536;
constexpr std::size_t c_maxSpareChunks = 256;

} // namespace

LogPieceQueue::LogPieceQueue() = default;

LogPieceQueue::~LogPieceQueue() = default;

void LogPieceQueue::Push(std::wstring_view piece)
{
    if (m_used > 0 && m_chunks[m_used - 1].Append(piece))
        return;
    GetNextChunk(LogPieceChunk::MeasurePiece(piece)).Append(piece);
    ++m_used;
}

// Returns the first spare chunk, with room for at least `capacity` bytes. Allocates it if needed.
LogPieceChunk& LogPieceQueue::GetNextChunk(std::size_t capacity)
{
    if (m_used == m_chunks.size())
        m_chunks.emplace_back(std::max(c_chunkSize, capacity));
    else if (m_chunks[m_used].GetCapacity() < capacity)
        m_chunks[m_used] = LogPieceChunk(capacity);
    return m_chunks[m_used];
}

void LogPieceQueue::Swap(LogPieceQueue& other) noexcept
{
    m_chunks.swap(other.m_chunks);
    std::swap(m_used, other.m_used);
}

void LogPieceQueue::Clear()
{
    // Frees larger chunks, because each was allocated for a single long piece.
    std::erase_if(m_chunks,
                  [](const LogPieceChunk& chunk) { return chunk.GetCapacity() > c_chunkSize; });
    if (m_chunks.size() > c_maxSpareChunks)
        m_chunks.erase(m_chunks.begin() + c_maxSpareChunks, m_chunks.end());
    for (LogPieceChunk& chunk : m_chunks)
        chunk.Clear();
    m_used = 0;
}

void LogPieceQueue::Release()
{
    LogPieceQueue().Swap(*this);
}

} // namespace Toolkit
