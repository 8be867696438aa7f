#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/logging/LogPieceBlock.Private.h"

#include <algorithm>

namespace Toolkit {
namespace {

// Appends the Latin-1 text `piece` as UTF-8.
void AppendEncodedLatin1(std::string& bytes, std::string_view piece)
{
    for (std::size_t at = 0; at < piece.size();) {
        const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
        const auto* const end = std::find_if_not(piece.begin() + at, piece.end(), isAscii);
        bytes.append(piece.begin() + at, end);
        at = static_cast<std::size_t>(end - piece.begin());
        if (at == piece.size())
            return;
        const auto character = static_cast<unsigned char>(piece[at++]);
        bytes += static_cast<char>(0xC0 | (character >> 6));
        bytes += static_cast<char>(0x80 | (character & 0x3F));
    }
}

} // namespace

LogPieceBlock::LogPieceBlock(std::size_t pageSize) : m_pageSize(pageSize) {}

void LogPieceBlock::Begin(long long offset)
{
    m_pageOffset = static_cast<std::size_t>(offset) % m_pageSize;
    m_bytes.clear();
}

bool LogPieceBlock::Append(std::wstring_view piece)
{
    const std::size_t oldSize = m_bytes.size();
    if (!Base::RunsWithoutThrowing(
            [&] { Base::AppendEncodedUtf8(m_bytes, piece.data(), piece.size()); }))
        m_bytes.resize(oldSize);
    return KeepIfItFits(oldSize);
}

bool LogPieceBlock::Append(std::string_view piece)
{
    const std::size_t oldSize = m_bytes.size();
    if (!Base::RunsWithoutThrowing([&] { AppendEncodedLatin1(m_bytes, piece); }))
        m_bytes.resize(oldSize);
    return KeepIfItFits(oldSize);
}

// Returns whether the block has room for its last piece, which begins at `pieceBegin`. If it does
// not, removes the piece.
bool LogPieceBlock::KeepIfItFits(std::size_t pieceBegin)
{
    if (pieceBegin == 0) {
        const std::size_t pages = (m_pageOffset + m_bytes.size() + m_pageSize - 1) / m_pageSize;
        m_maxSize = pages * m_pageSize - m_pageOffset;
        return true;
    }
    if (m_bytes.size() <= m_maxSize)
        return true;
    m_bytes.resize(pieceBegin);
    return false;
}

} // namespace Toolkit
