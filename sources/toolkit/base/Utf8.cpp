#include "toolkit/base/Utf8.h"

#include "toolkit/base/Lanes.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwchar>

namespace Toolkit::Base {
namespace {

// Strings are converted through a buffer of this many characters on the stack.
// WideToUtf8/script:0/bytes:1000000: converting into a string that is resized first, which fills it
// with zeros, takes 1.4 times as long.
constexpr std::ptrdiff_t c_bufferLength = 1024;

// A block of this many characters that is all ASCII is copied with vector instructions.
// Utf8ToWide/script:0/bytes:10000: one character at a time takes 4 times as long.
// WideToUtf8/script:0/bytes:10000: 3 times.
constexpr std::ptrdiff_t c_blockLength = 16;

// Other text is converted one character at a time, in runs that double up to this length. A block
// is tried only between runs: in text that is rarely ASCII, most tries fail.
constexpr std::ptrdiff_t c_maxRunLength = 4 * c_blockLength;

constexpr std::ptrdiff_t c_maxSequenceLength = 4;

constexpr std::uint32_t c_lastCodePoint = 0x10FFFF;

// Copies a block that is all ASCII; returns false for any other. Both overloads write to a local
// array, which no other pointer can alias, so that the compiler vectorizes the loop. Reading from a
// local copy does not help: GCC 14 unrolls such a loop instead.
bool CopyAsciiBlock(const char* from, wchar_t* to)
{
    if (!AreAllZero(LoadLanes<unsigned char>(from) & 0x80))
        return false;

    wchar_t block[c_blockLength];
    for (std::ptrdiff_t i = 0; i < c_blockLength; ++i)
        block[i] = static_cast<unsigned char>(from[i]);
    std::memcpy(to, block, sizeof block);
    return true;
}

bool CopyAsciiBlock(const wchar_t* from, char* to)
{
    using Characters = Lanes<std::uint32_t>;
    Characters bits = {};
    for (std::size_t i = 0; i < c_blockLength; i += c_laneCount<std::uint32_t>)
        bits |= LoadLanes<std::uint32_t>(from + i);
    if (!AreAllZero(bits & ~0x7Fu))
        return false;

    char block[c_blockLength];
    for (std::ptrdiff_t i = 0; i < c_blockLength; ++i)
        block[i] = static_cast<char>(from[i]);
    std::memcpy(to, block, sizeof block);
    return true;
}

// Whether all these bytes have the form 10xxxxxx.
template <typename... Bytes>
constexpr bool AreContinuations(Bytes... bytes)
{
    return ((bytes ^ 0x80u) | ...) < 0x40;
}

// Returns the number composed of `leadBits` and the last six bits of each of `bytes`.
template <typename... Bytes>
constexpr std::uint32_t Combine(std::uint32_t leadBits, Bytes... bytes)
{
    ((leadBits = leadBits << 6 | (bytes & 0x3Fu)), ...);
    return leadBits;
}

// Decodes the sequence of two to four bytes at `at` and moves past it; returns false if the
// sequence is not valid. The limits are those of RFC 3629, sections 3 and 4.
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
        // Lead bytes above 0xF4 yield values that are too large.
        value = Combine(lead & 0x0F, bytes[1], bytes[2], bytes[3]);
        if (value < 0x10000 || value > c_lastCodePoint)
            return false;
        at += 4;
    }
    character = static_cast<wchar_t>(value);
    return true;
}

// Utf8ToWide/script:1/bytes:10000: one character at a time takes 1.3 times as long.
//
// Copies the next ASCII characters, at most one block.
inline void CopyAscii(const char*& at, const char* end, wchar_t*& out)
{
    const std::ptrdiff_t maxLength = std::min(end - at, c_blockLength);
    std::ptrdiff_t length = 0;
    while (length < maxLength && static_cast<signed char>(at[length]) >= 0) {
        out[length] = at[length];
        ++length;
    }
    at += length;
    out += length;
}

constexpr char MakeContinuation(std::uint32_t bits)
{
    return static_cast<char>(0x80 | (bits & 0x3F));
}

// Writes one character as UTF-8 and moves `out` past it; returns false if the character is above
// U+10FFFF.
inline bool EncodeCharacter(std::uint32_t character, char*& out)
{
    if (character < 0x80) {
        *out++ = static_cast<char>(character);
    } else if (character < 0x800) {
        *out++ = static_cast<char>(0xC0 | character >> 6);
        *out++ = MakeContinuation(character);
    } else if (character < 0x10000) {
        *out++ = static_cast<char>(0xE0 | character >> 12);
        *out++ = MakeContinuation(character >> 6);
        *out++ = MakeContinuation(character);
    } else if (character <= c_lastCodePoint) {
        *out++ = static_cast<char>(0xF0 | character >> 18);
        *out++ = MakeContinuation(character >> 12);
        *out++ = MakeContinuation(character >> 6);
        *out++ = MakeContinuation(character);
    } else {
        return false;
    }
    return true;
}

// Converts until the buffer has no room for another run or the text ends, and moves `text` past
// what was converted. Returns the end of the output, or null if `convertNext` returns false. A run
// writes at most `maxRunOutput` characters.
template <typename From, typename To, typename ConvertNext>
To* ConvertIntoBuffer(const From*& text, const From* end, To* buffer, std::ptrdiff_t maxRunOutput,
                      ConvertNext convertNext)
{
    const From* at = text;
    To* out = buffer;
    const To* const lastRunStart = buffer + c_bufferLength - maxRunOutput;
    std::ptrdiff_t run = c_blockLength;
    while (at != end && out <= lastRunStart) {
        if (end - at >= c_blockLength && CopyAsciiBlock(at, out)) {
            at += c_blockLength;
            out += c_blockLength;
            run = c_blockLength;
            continue;
        }
        const From* const runEnd = at + std::min(end - at, run);
        run = std::min(2 * run, c_maxRunLength);
        while (at < runEnd) {
            if (!convertNext(at, out))
                return nullptr;
        }
    }
    text = at;
    return out;
}

wchar_t* DecodeIntoBuffer(const char*& bytes, const char* end, wchar_t* buffer)
{
    // CopyAscii() may start at the last character of a run and copy a whole block.
    constexpr std::ptrdiff_t maxRunOutput = c_maxRunLength + c_blockLength;
    return ConvertIntoBuffer(bytes, end, buffer, maxRunOutput,
                             [end](const char*& at, wchar_t*& out) {
                                 if (static_cast<signed char>(*at) < 0)
                                     return DecodeSequence(at, end, *out++);
                                 CopyAscii(at, end, out);
                                 return true;
                             });
}

char* EncodeIntoBuffer(const wchar_t*& text, const wchar_t* end, char* buffer)
{
    return ConvertIntoBuffer(text, end, buffer, c_maxRunLength * c_maxSequenceLength,
                             [](const wchar_t*& at, char*& out) {
                                 return EncodeCharacter(static_cast<std::uint32_t>(*at++), out);
                             });
}

// Returns the length to reserve for the result if the first `taken` of `length` characters became
// `count`. Most strings continue as they begin.
//
// Utf8ToWide/script:0/bytes:1000000: growing without an estimate takes 2.9 times as long.
// WideToUtf8/script:2/bytes:1000000: 1.5 times.
std::size_t EstimateLength(std::size_t count, std::ptrdiff_t taken, std::size_t length)
{
    const std::size_t estimate = length / static_cast<std::size_t>(taken) * count;
    return estimate + estimate / 16 + c_bufferLength;
}

// Frees unused memory if the estimate was more than twice the length. A string that still has its
// old capacity keeps it.
template <typename Text>
void ShrinkIfOversized(Text& text, std::size_t oldCapacity)
{
    if (text.capacity() > oldCapacity && text.capacity() / 2 > text.size())
        text.shrink_to_fit();
}

} // namespace

std::string EncodeUtf8(const std::wstring& text)
{
    std::string bytes;
    // Searches the result for the null character, because the result has fewer bytes than `text`.
    // If the conversion fails, tries again up to the null character: invalid characters after it
    // must not matter.
    if (!AppendEncodedUtf8(bytes, text.data(), text.size()))
        AppendEncodedUtf8(bytes, text.c_str(), std::wcslen(text.c_str()));
    bytes.resize(std::strlen(bytes.c_str()));
    return bytes;
}

std::wstring DecodeUtf8(const std::string& bytes)
{
    return DecodeUtf8(bytes.c_str());
}

std::wstring DecodeUtf8(const char* bytes)
{
    std::wstring text;
    if (bytes)
        AppendDecodedUtf8(text, bytes, std::strlen(bytes));
    return text;
}

bool AppendEncodedUtf8(std::string& bytes, const wchar_t* text, std::size_t length)
{
    const std::size_t oldLength = bytes.size();
    const wchar_t* const end = text + length;
    const std::size_t oldCapacity = bytes.capacity();
    char buffer[c_bufferLength];
    while (text != end) {
        const wchar_t* const begin = text;
        const char* const written = EncodeIntoBuffer(text, end, buffer);
        if (!written) {
            bytes.resize(oldLength);
            return false;
        }
        const auto count = static_cast<std::size_t>(written - buffer);
        if (text != end && bytes.size() == oldLength)
            bytes.reserve(oldLength + EstimateLength(count, text - begin, length));
        bytes.append(buffer, count);
    }
    ShrinkIfOversized(bytes, oldCapacity);
    return true;
}

bool AppendDecodedUtf8(std::wstring& text, const char* bytes, std::size_t length)
{
    const std::size_t oldLength = text.size();
    const char* const end = bytes + length;
    const std::size_t oldCapacity = text.capacity();
    wchar_t buffer[c_bufferLength];
    while (bytes != end) {
        const char* const begin = bytes;
        const wchar_t* const written = DecodeIntoBuffer(bytes, end, buffer);
        if (!written) {
            text.resize(oldLength);
            return false;
        }
        const auto count = static_cast<std::size_t>(written - buffer);
        if (bytes != end && text.size() == oldLength)
            text.reserve(oldLength + EstimateLength(count, bytes - begin, length));
        text.append(buffer, count);
    }
    ShrinkIfOversized(text, oldCapacity);
    return true;
}

bool IsUtf8(const char* bytes, std::size_t length)
{
    const char* const end = bytes + length;
    wchar_t buffer[c_bufferLength];
    while (bytes != end) {
        if (!DecodeIntoBuffer(bytes, end, buffer))
            return false;
    }
    return true;
}

wchar_t DecodeNextMultibyteCharacter(const char*& at, const char* end)
{
    wchar_t character = 0;
    // If the caller passes invalid UTF-8, skips one byte and returns a null character.
    if (!DecodeSequence(at, end, character))
        ++at;
    return character;
}

} // namespace Toolkit::Base
