#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace Toolkit {

/// A block of memory filled with pieces of log text, one after the other.
///
/// A piece whose characters each fit into one byte is stored as bytes. `LogMemory`: stored as wide
/// characters, it takes four times the memory.
class LogPieceChunk {
public:
    /// Returns the maximum number of bytes that `piece` takes in a chunk.
    static std::size_t MeasurePiece(std::wstring_view piece);

    /// Throws `std::bad_alloc` when out of memory.
    explicit LogPieceChunk(std::size_t capacity);

    std::size_t GetCapacity() const { return m_capacity; }

    /// Appends `piece`; false when there is no room for it.
    bool Append(std::wstring_view piece);

    void Clear() { m_size = 0; }

    /// Calls `visit` with each piece, in order: with a `std::string_view` of Latin-1 characters or
    /// with a `std::wstring_view`.
    template <typename Visitor>
    void VisitPieces(Visitor& visit) const
    {
        const unsigned char* const end = m_bytes.get() + m_size;
        for (const unsigned char* at = m_bytes.get(); at != end;) {
            if (*at == c_wideTag)
                visit(ReadWide(at));
            else
                visit(ReadBytes(at));
        }
    }

private:
    // A piece of fewer than 254 bytes begins with its length, in one byte. A longer piece begins
    // with c_longTag and the length as a std::size_t; a wide piece with c_wideTag, the number of
    // characters as a std::size_t, and padding that aligns the characters.
    static constexpr unsigned char c_longTag = 0xFE;
    static constexpr unsigned char c_wideTag = 0xFF;
    static constexpr std::size_t c_longHeaderSize = 1 + sizeof(std::size_t);
    static constexpr std::size_t c_maxOverhead = c_longHeaderSize + alignof(wchar_t) - 1;

    bool AppendBytes(std::wstring_view piece);
    void AppendWide(std::wstring_view piece);

    // Each returns the piece at `at` and moves `at` to the next one.
    static std::string_view ReadBytes(const unsigned char*& at);
    static std::wstring_view ReadWide(const unsigned char*& at);

    std::unique_ptr<unsigned char[]> m_bytes;
    std::size_t m_capacity;
    std::size_t m_size = 0;
};

} // namespace Toolkit
