#include "toolkit/logging/LogPieceChunk.Private.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace Toolkit {
namespace {

using Character = std::make_unsigned_t<wchar_t>;

constexpr Character c_maxByte = 0xFF;

// Returns the first address from `at` on that is aligned for wide characters.
template <typename Byte>
Byte* AlignForWide(Byte* at)
{
    const auto misalignment = reinterpret_cast<std::uintptr_t>(at) % alignof(wchar_t);
    return misalignment == 0 ? at : at + (alignof(wchar_t) - misalignment);
}

void WriteLength(unsigned char* at, std::size_t length)
{
    std::memcpy(at, &length, sizeof length);
}

std::size_t ReadLength(const unsigned char* at)
{
    std::size_t length = 0;
    std::memcpy(&length, at, sizeof length);
    return length;
}

} // namespace

std::size_t LogPieceChunk::MeasurePiece(std::wstring_view piece)
{
    const bool isBytes = std::all_of(piece.begin(), piece.end(), [](wchar_t character) {
        return static_cast<Character>(character) <= c_maxByte;
    });
    return c_maxOverhead + piece.size() * (isBytes ? 1 : sizeof(wchar_t));
}

// The memory is not zeroed, so that the system provides each page only when it is needed.
LogPieceChunk::LogPieceChunk(std::size_t capacity)
    : m_bytes(new unsigned char[capacity]), m_capacity(capacity)
{
}

bool LogPieceChunk::Append(std::wstring_view piece)
{
    const std::size_t room = m_capacity - m_size;
    if (room < c_maxOverhead + piece.size())
        return false;
    if (AppendBytes(piece))
        return true;
    if ((room - c_maxOverhead) / sizeof(wchar_t) < piece.size())
        return false;
    AppendWide(piece);
    return true;
}

// False if a character does not fit into a byte.
bool LogPieceChunk::AppendBytes(std::wstring_view piece)
{
    const bool isShort = piece.size() < c_longTag;
    unsigned char* const header = &m_bytes[m_size];
    unsigned char* const bytes = header + (isShort ? 1 : c_longHeaderSize);
    Character allBits = 0;
    for (std::size_t i = 0; i < piece.size(); ++i) {
        // NOLINTNEXTLINE(bugprone-signed-char-misuse): the check treats wchar_t as signed char.
        const auto character = static_cast<Character>(piece[i]);
        allBits |= character;
        bytes[i] = static_cast<unsigned char>(character);
    }
    if (allBits > c_maxByte)
        return false;
    *header = isShort ? static_cast<unsigned char>(piece.size()) : c_longTag;
    if (!isShort)
        WriteLength(header + 1, piece.size());
    m_size = static_cast<std::size_t>(bytes + piece.size() - m_bytes.get());
    return true;
}

void LogPieceChunk::AppendWide(std::wstring_view piece)
{
    unsigned char* const header = &m_bytes[m_size];
    *header = c_wideTag;
    WriteLength(header + 1, piece.size());
    unsigned char* const characters = AlignForWide(header + c_longHeaderSize);
    std::memcpy(characters, piece.data(), piece.size() * sizeof(wchar_t));
    m_size = static_cast<std::size_t>(characters - m_bytes.get()) + piece.size() * sizeof(wchar_t);
}

std::string_view LogPieceChunk::ReadBytes(const unsigned char*& at)
{
    const bool isShort = *at != c_longTag;
    const std::size_t length = isShort ? *at : ReadLength(at + 1);
    const unsigned char* const bytes = at + (isShort ? 1 : c_longHeaderSize);
    at = bytes + length;
    return {reinterpret_cast<const char*>(bytes), length};
}

std::wstring_view LogPieceChunk::ReadWide(const unsigned char*& at)
{
    const std::size_t length = ReadLength(at + 1);
    const auto* const characters =
        reinterpret_cast<const wchar_t*>(AlignForWide(at + c_longHeaderSize));
    at = reinterpret_cast<const unsigned char*>(characters + length);
    return {characters, length};
}

} // namespace Toolkit
