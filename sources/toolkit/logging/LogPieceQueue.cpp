#include "toolkit/logging/LogPieceQueue.Private.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <utility>

namespace Toolkit {
namespace {

constexpr std::size_t c_chunkLength = 16384;
constexpr std::size_t c_keptChunks = 1024;

} // namespace

// Not zeroed: the memory is touched when it is needed.
LogPieceQueue::Chunk::Chunk(std::size_t size) : text(new wchar_t[size]), capacity(size) {}

std::wstring_view LogPieceQueue::Chunk::PieceAt(std::size_t at) const
{
    std::size_t pieceLength = 0;
    std::memcpy(&pieceLength, &text[at], sizeof pieceLength);
    return {&text[at + c_headerLength], pieceLength};
}

LogPieceQueue::LogPieceQueue() = default;

LogPieceQueue::~LogPieceQueue() = default;

void LogPieceQueue::Push(std::wstring_view piece)
{
    const std::size_t pieceLength = piece.size();
    Chunk& chunk = ChunkWithRoom(c_headerLength + pieceLength);
    wchar_t* const end = &chunk.text[chunk.length];
    std::memcpy(end, &pieceLength, sizeof pieceLength);
    std::wmemcpy(end + c_headerLength, piece.data(), pieceLength);
    chunk.length += c_headerLength + pieceLength;
}

// The last chunk in use, or the next one, with room for `length` characters.
LogPieceQueue::Chunk& LogPieceQueue::ChunkWithRoom(std::size_t length)
{
    if (m_used > 0) {
        Chunk& last = m_chunks[m_used - 1];
        if (last.capacity - last.length >= length)
            return last;
    }
    if (m_used == m_chunks.size())
        m_chunks.emplace_back(std::max(c_chunkLength, length));
    else if (m_chunks[m_used].capacity < length)
        m_chunks[m_used] = Chunk(length);
    return m_chunks[m_used++];
}

void LogPieceQueue::Swap(LogPieceQueue& other) noexcept
{
    m_chunks.swap(other.m_chunks);
    std::swap(m_used, other.m_used);
}

void LogPieceQueue::Release()
{
    LogPieceQueue().Swap(*this);
}

void LogPieceQueue::Clear()
{
    // One that was made for a long piece is not kept.
    const auto isLong = [](const Chunk& chunk) { return chunk.capacity > c_chunkLength; };
    m_chunks.erase(std::remove_if(m_chunks.begin(), m_chunks.end(), isLong), m_chunks.end());
    if (m_chunks.size() > c_keptChunks)
        m_chunks.erase(m_chunks.begin() + c_keptChunks, m_chunks.end());
    for (Chunk& chunk : m_chunks)
        chunk.length = 0;
    m_used = 0;
}

} // namespace Toolkit
