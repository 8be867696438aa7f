#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Toolkit {

/// Collects pieces of text, as UTF-8, into a block that is handed to a file in one write.
///
/// A process that is killed in the middle of a write leaves what the kernel had copied by then, and
/// the kernel looks for the deadly signal whenever it turns to another page of the file. A block
/// therefore ends with the last whole piece before the next end of a page: what lies in one page is
/// written wholly or not at all. A piece that does not fit into the rest of its page stands first
/// in its block, where the kernel turns the page a third of a microsecond after it began. Only then
/// can a killed process leave a piece cut: the last one, exactly at the end of a page. No order of
/// writes can prevent that, since the two pages of such a piece cannot be written at once.
class LogPieceBlock {
public:
    explicit LogPieceBlock(std::size_t pageSize);

    /// Empties the block, which will be written at `offset` of the file.
    void Begin(long long offset);

    /// False when `piece` does not fit any more: the block is to be written first. The first piece
    /// always fits; one without a UTF-8 form, or without memory for it, is left out. A piece of
    /// bytes has characters up to U+00FF.
    bool Append(std::wstring_view piece);
    bool Append(std::string_view piece);

    bool IsEmpty() const { return m_bytes.empty(); }
    const char* Data() const { return m_bytes.data(); }
    std::size_t Size() const { return m_bytes.size(); }

private:
    bool KeepFrom(std::size_t oldSize);

    std::size_t m_pageSize;
    std::size_t m_pageOffset = 0; // of the block's beginning, in its page
    std::size_t m_limit = 0;      // of the block's size, once there is a first piece
    std::string m_bytes;
};

} // namespace Toolkit
