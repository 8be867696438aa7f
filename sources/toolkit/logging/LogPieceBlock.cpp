#include "toolkit/base/Utf8.h"
#include "toolkit/logging/LogPieceBlock.Private.h"

#include <new>

namespace Toolkit {
namespace {

// Appends nothing when there is no memory.
void AppendEncoded(std::string& bytes, std::wstring_view piece)
{
    const std::size_t oldSize = bytes.size();
    try {
        Base::AppendEncodedUtf8(bytes, piece.data(), piece.size());
    } catch (const std::bad_alloc&) {
        bytes.resize(oldSize);
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
    AppendEncoded(m_bytes, piece);
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
