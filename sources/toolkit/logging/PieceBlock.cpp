#include "toolkit/encoding/Utf8Codec.Private.h"
#include "toolkit/logging/PieceBlock.Private.h"

namespace Toolkit {

PieceBlock::PieceBlock(std::size_t pageSize) : m_pageSize(pageSize) {}

void PieceBlock::Begin(long long offset)
{
    m_pageOffset = static_cast<std::size_t>(offset) % m_pageSize;
    m_bytes.clear();
}

bool PieceBlock::Append(std::wstring_view piece)
{
    const std::size_t oldSize = m_bytes.size();
    Utf8Codec::AppendEncoded(m_bytes, piece.data(), piece.size());
    if (oldSize == 0) {
        const std::size_t pages = (m_pageOffset + m_bytes.size() + m_pageSize - 1) / m_pageSize;
        m_limit = pages * m_pageSize - m_pageOffset;
        return true;
    }
    if (m_bytes.size() <= m_limit)
        return true;
    m_bytes.resize(oldSize);
    return false;
}

} // namespace Toolkit
