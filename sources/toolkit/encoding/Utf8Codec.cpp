#include "toolkit/encoding/Utf8Codec.Private.h"

#include <algorithm>
#include <cstdint>

namespace Toolkit::Utf8Codec {
namespace {

// Texts are converted through a buffer on the stack: appending from it costs less than filling the
// text's own memory with zeros first, and needs no second text.
constexpr std::size_t c_bufferLength = 1024;

// ASCII is converted in blocks of this many characters with vector instructions.
constexpr std::size_t c_blockLength = 16;

constexpr std::size_t c_longestSequence = 4;

constexpr std::uint32_t c_lastCodePoint = 0x10FFFF;

bool IsAsciiBlock(const char* bytes)
{
    unsigned char bits = 0;
    for (std::size_t i = 0; i < c_blockLength; ++i)
        bits = static_cast<unsigned char>(bits | static_cast<unsigned char>(bytes[i]));
    return bits < 0x80;
}

bool IsAsciiBlock(const wchar_t* text)
{
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < c_blockLength; ++i)
        bits |= static_cast<std::uint32_t>(text[i]);
    return bits < 0x80;
}

// Copies leading ASCII, at most `room` characters of it, in blocks; both positions move.
template <typename From, typename To>
void CopyAsciiBlocks(const From*& at, const From* end, To*& out, std::size_t room)
{
    std::size_t blocks = std::min(static_cast<std::size_t>(end - at), room) / c_blockLength;
    for (; blocks > 0 && IsAsciiBlock(at); --blocks) {
        for (std::size_t i = 0; i < c_blockLength; ++i)
            out[i] = static_cast<To>(at[i]);
        at += c_blockLength;
        out += c_blockLength;
    }
}

constexpr bool IsContinuation(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

// Reads the sequence of two to four bytes at `at` and moves behind it; false when it is not valid.
// The bounds of the second byte are those of RFC 3629, section 4.
inline bool DecodeSequence(const char*& at, const char* end, wchar_t& character)
{
    const auto* const bytes = reinterpret_cast<const unsigned char*>(at);
    const auto left = static_cast<std::size_t>(end - at);
    const std::uint32_t lead = bytes[0];
    if (lead < 0xE0) {
        if (lead < 0xC2 || left < 2 || !IsContinuation(bytes[1]))
            return false;
        character = static_cast<wchar_t>((lead & 0x1F) << 6 | (bytes[1] & 0x3Fu));
        at += 2;
        return true;
    }
    if (lead < 0xF0) {
        if (left < 3 || !IsContinuation(bytes[1]) || !IsContinuation(bytes[2]))
            return false;
        const std::uint32_t value =
            (lead & 0x0F) << 12 | (bytes[1] & 0x3Fu) << 6 | (bytes[2] & 0x3Fu);
        const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
        if (value < 0x800 || isSurrogate)
            return false;
        character = static_cast<wchar_t>(value);
        at += 3;
        return true;
    }
    if (lead > 0xF4 || left < 4 || !IsContinuation(bytes[1]) || !IsContinuation(bytes[2]) ||
        !IsContinuation(bytes[3]))
        return false;
    const std::uint32_t value = (lead & 0x07) << 18 | (bytes[1] & 0x3Fu) << 12 |
                                (bytes[2] & 0x3Fu) << 6 | (bytes[3] & 0x3Fu);
    if (value < 0x10000 || value > c_lastCodePoint)
        return false;
    character = static_cast<wchar_t>(value);
    at += 4;
    return true;
}

// Decodes until the buffer is full or the bytes end. Returns the end of what was written; null when
// the bytes are not valid.
wchar_t* DecodeIntoBuffer(const char*& at, const char* end, wchar_t* buffer)
{
    wchar_t* out = buffer;
    wchar_t* const bufferEnd = buffer + c_bufferLength;
    while (at != end && out != bufferEnd) {
        if (static_cast<signed char>(*at) >= 0) {
            CopyAsciiBlocks(at, end, out, static_cast<std::size_t>(bufferEnd - out));
            while (at != end && out != bufferEnd && static_cast<signed char>(*at) >= 0)
                *out++ = *at++;
            continue;
        }
        while (at != end && out != bufferEnd && static_cast<signed char>(*at) < 0) {
            if (!DecodeSequence(at, end, *out++))
                return nullptr;
        }
    }
    return out;
}

// Writes the sequence of one character and moves behind it; false when it has none.
inline bool EncodeCharacter(std::uint32_t character, char*& out)
{
    const auto continuation = [](std::uint32_t bits) {
        return static_cast<char>(0x80 | (bits & 0x3F));
    };
    if (character < 0x80) {
        *out++ = static_cast<char>(character);
    } else if (character < 0x800) {
        *out++ = static_cast<char>(0xC0 | character >> 6);
        *out++ = continuation(character);
    } else if (character < 0x10000) {
        *out++ = static_cast<char>(0xE0 | character >> 12);
        *out++ = continuation(character >> 6);
        *out++ = continuation(character);
    } else if (character <= c_lastCodePoint) {
        *out++ = static_cast<char>(0xF0 | character >> 18);
        *out++ = continuation(character >> 12);
        *out++ = continuation(character >> 6);
        *out++ = continuation(character);
    } else {
        return false;
    }
    return true;
}

// Encodes until the buffer has no room for another character or the text ends. Returns the end of
// what was written; null when a character has no form.
char* EncodeIntoBuffer(const wchar_t*& at, const wchar_t* end, char* buffer)
{
    char* out = buffer;
    char* const lastStart = buffer + c_bufferLength - c_longestSequence;
    while (at != end && out <= lastStart) {
        if (static_cast<std::uint32_t>(*at) < 0x80)
            CopyAsciiBlocks(at, end, out, static_cast<std::size_t>(lastStart - out));
        for (std::size_t i = 0; i < c_blockLength && at != end && out <= lastStart; ++i) {
            if (!EncodeCharacter(static_cast<std::uint32_t>(*at++), out))
                return nullptr;
        }
    }
    return out;
}

} // namespace

bool AppendEncoded(std::string& bytes, const wchar_t* text, std::size_t length)
{
    const std::size_t oldLength = bytes.size();
    const wchar_t* const end = text + length;
    char buffer[c_bufferLength];
    while (text != end) {
        const char* const written = EncodeIntoBuffer(text, end, buffer);
        if (!written) {
            bytes.resize(oldLength);
            return false;
        }
        bytes.append(static_cast<const char*>(buffer), written);
    }
    return true;
}

bool AppendDecoded(std::wstring& text, const char* bytes, std::size_t length)
{
    const std::size_t oldLength = text.size();
    const char* const end = bytes + length;
    wchar_t buffer[c_bufferLength];
    while (bytes != end) {
        const wchar_t* const written = DecodeIntoBuffer(bytes, end, buffer);
        if (!written) {
            text.resize(oldLength);
            return false;
        }
        text.append(static_cast<const wchar_t*>(buffer), written);
    }
    return true;
}

} // namespace Toolkit::Utf8Codec
