#include "toolkit/encoding/Utf8Codec.Private.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <numeric>

namespace Toolkit::Utf8Codec {
namespace {

// Texts are converted through a buffer on the stack: appending from it costs less than filling the
// text's own memory with zeros first, and needs no second text.
constexpr std::ptrdiff_t c_bufferLength = 1024;

// Where a block of this many characters is all ASCII, it is copied with vector instructions.
constexpr std::ptrdiff_t c_blockLength = 16;

constexpr std::ptrdiff_t c_longestSequence = 4;

constexpr std::uint32_t c_lastCodePoint = 0x10FFFF;

// The local copies are blocks that nothing else points to: on them the compiler uses vectors.
bool CopyAsciiBlock(const char* from, wchar_t* to)
{
    std::uint64_t halves[2];
    std::memcpy(halves, from, sizeof halves);
    if (((halves[0] | halves[1]) & 0x8080808080808080) != 0)
        return false;

    unsigned char block[c_blockLength];
    std::memcpy(block, from, sizeof block);
    for (std::ptrdiff_t i = 0; i < c_blockLength; ++i)
        to[i] = block[i];
    return true;
}

bool CopyAsciiBlock(const wchar_t* from, char* to)
{
    std::uint32_t bits = 0;
    for (std::ptrdiff_t i = 0; i < c_blockLength; ++i)
        bits |= static_cast<std::uint32_t>(from[i]);
    if (bits >= 0x80)
        return false;

    char block[c_blockLength];
    for (std::ptrdiff_t i = 0; i < c_blockLength; ++i)
        block[i] = static_cast<char>(from[i]);
    std::memcpy(to, block, sizeof block);
    return true;
}

// Whether a byte has the form 10xxxxxx: as a signed number it is below all others.
constexpr bool IsContinuation(char byte)
{
    return static_cast<signed char>(byte) < -0x40;
}

// Whether all these bytes have the form 10xxxxxx.
template <typename... Bytes>
constexpr bool AreContinuations(Bytes... bytes)
{
    return ((bytes ^ 0x80u) | ...) < 0x40;
}

// The number that `leadBits` and the last six bits of each of `bytes` make up.
template <typename... Bytes>
constexpr std::uint32_t Combine(std::uint32_t leadBits, Bytes... bytes)
{
    ((leadBits = leadBits << 6 | (bytes & 0x3Fu)), ...);
    return leadBits;
}

// Reads the sequence of two to four bytes at `at` and moves behind it; false when it is not valid.
// The limits are those of RFC 3629, sections 3 and 4.
inline bool DecodeSequence(const char*& at, const char* end, wchar_t& character)
{
    const auto* const bytes = reinterpret_cast<const unsigned char*>(at);
    const std::ptrdiff_t left = end - at;
    const std::uint32_t lead = bytes[0];
    std::uint32_t value = 0;
    if (lead < 0xE0) {
        if (lead < 0xC2 || left < 2 || !AreContinuations(bytes[1]))
            return false;
        value = Combine(lead & 0x1F, bytes[1]);
        at += 2;
    } else if (lead < 0xF0) {
        if (left < 3 || !AreContinuations(bytes[1], bytes[2]))
            return false;
        value = Combine(lead & 0x0F, bytes[1], bytes[2]);
        const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
        if (value < 0x800 || isSurrogate)
            return false;
        at += 3;
    } else {
        if (left < 4 || !AreContinuations(bytes[1], bytes[2], bytes[3]))
            return false;
        // Leads above 0xF4 make values that are too large.
        value = Combine(lead & 0x0F, bytes[1], bytes[2], bytes[3]);
        if (value < 0x10000 || value > c_lastCodePoint)
            return false;
        at += 4;
    }
    character = static_cast<wchar_t>(value);
    return true;
}

// Decodes until the buffer has no room for another block or the bytes end. Returns the end of what
// was written; null when the bytes are not valid.
wchar_t* DecodeIntoBuffer(const char*& bytes, const char* end, wchar_t* buffer)
{
    const char* at = bytes;
    wchar_t* out = buffer;
    const wchar_t* const lastBlock = buffer + c_bufferLength - c_blockLength;
    while (at != end && out <= lastBlock) {
        if (end - at >= c_blockLength && CopyAsciiBlock(at, out)) {
            at += c_blockLength;
            out += c_blockLength;
            continue;
        }
        const char* const blockEnd = at + std::min(end - at, c_blockLength);
        while (at < blockEnd) {
            if (static_cast<signed char>(*at) >= 0)
                *out++ = *at++;
            else if (!DecodeSequence(at, end, *out++))
                return nullptr;
        }
    }
    bytes = at;
    return out;
}

constexpr char Continuation(std::uint32_t bits)
{
    return static_cast<char>(0x80 | (bits & 0x3F));
}

// Writes the sequence of one character and returns its end; null when it has none.
inline char* EncodeCharacter(std::uint32_t character, char* out)
{
    if (character < 0x80) {
        out[0] = static_cast<char>(character);
        return out + 1;
    }
    if (character < 0x800) {
        out[0] = static_cast<char>(0xC0 | character >> 6);
        out[1] = Continuation(character);
        return out + 2;
    }
    if (character < 0x10000) {
        out[0] = static_cast<char>(0xE0 | character >> 12);
        out[1] = Continuation(character >> 6);
        out[2] = Continuation(character);
        return out + 3;
    }
    if (character > c_lastCodePoint)
        return nullptr;
    out[0] = static_cast<char>(0xF0 | character >> 18);
    out[1] = Continuation(character >> 12);
    out[2] = Continuation(character >> 6);
    out[3] = Continuation(character);
    return out + 4;
}

// Encodes until the buffer has no room for another block or the text ends. Returns the end of what
// was written; null when a character has no form.
char* EncodeIntoBuffer(const wchar_t*& text, const wchar_t* end, char* buffer)
{
    const wchar_t* at = text;
    char* out = buffer;
    const char* const lastBlock = buffer + c_bufferLength - c_blockLength * c_longestSequence;
    while (at != end && out <= lastBlock) {
        if (end - at >= c_blockLength && CopyAsciiBlock(at, out)) {
            at += c_blockLength;
            out += c_blockLength;
            continue;
        }
        const wchar_t* const blockEnd = at + std::min(end - at, c_blockLength);
        while (at != blockEnd) {
            out = EncodeCharacter(static_cast<std::uint32_t>(*at++), out);
            if (!out)
                return nullptr;
        }
    }
    text = at;
    return out;
}

// How many characters valid bytes hold; what others hold is of no use.
std::size_t CountCharacters(const char* at, const char* end)
{
    // The sums of so few blocks fit into bytes, which the compiler adds sixteen at a time.
    constexpr std::ptrdiff_t longestRun = 255;
    std::size_t count = 0;
    while (end - at >= c_blockLength) {
        unsigned char sums[c_blockLength] = {};
        for (auto left = std::min((end - at) / c_blockLength, longestRun); left > 0; --left) {
            for (std::ptrdiff_t i = 0; i < c_blockLength; ++i)
                sums[i] = static_cast<unsigned char>(sums[i] + !IsContinuation(at[i]));
            at += c_blockLength;
        }
        count = std::accumulate(std::begin(sums), std::end(sums), count);
    }
    return count + static_cast<std::size_t>(end - at);
}

} // namespace

bool AppendEncoded(std::string& bytes, const wchar_t* text, std::size_t length)
{
    const std::size_t oldLength = bytes.size();
    const wchar_t* const end = text + length;
    // Counting the bytes would cost more than moving them once or twice; ASCII is never moved.
    if (end - text > c_bufferLength / c_longestSequence)
        bytes.reserve(oldLength + length);
    char buffer[c_bufferLength];
    while (text != end) {
        const char* const written = EncodeIntoBuffer(text, end, buffer);
        if (!written) {
            bytes.resize(oldLength);
            return false;
        }
        bytes.append(buffer, static_cast<std::size_t>(written - buffer));
    }
    return true;
}

bool AppendDecoded(std::wstring& text, const char* bytes, std::size_t length)
{
    const std::size_t oldLength = text.size();
    const char* const end = bytes + length;
    if (end - bytes > c_bufferLength)
        text.reserve(oldLength + CountCharacters(bytes, end));
    wchar_t buffer[c_bufferLength];
    while (bytes != end) {
        const wchar_t* const written = DecodeIntoBuffer(bytes, end, buffer);
        if (!written) {
            text.resize(oldLength);
            return false;
        }
        text.append(buffer, static_cast<std::size_t>(written - buffer));
    }
    return true;
}

} // namespace Toolkit::Utf8Codec
