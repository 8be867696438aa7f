#include "toolkit/base/Utf8.h"

#include "toolkit/base/Lanes.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwchar>

namespace Toolkit::Base {
namespace {

// Texts are converted through a buffer on the stack: appending from it is faster than resizing the
// string first, which fills it with zeros.
constexpr std::ptrdiff_t c_bufferLength = 1024;

// A block of this many characters that is all ASCII is copied with vector instructions.
// Utf8ToWide/script:0/bytes:10000: one character at a time takes 4 times as long.
// WideToUtf8/script:0/bytes:10000: 3 times.
constexpr std::ptrdiff_t c_blockLength = 16;

// Any other block is converted one character at a time. Successive runs grow up to this length
// before the next block is tried: in text that is rarely ASCII, most trials are wasted.
constexpr std::ptrdiff_t c_longestRun = 4 * c_blockLength;

constexpr std::ptrdiff_t c_longestSequence = 4;

constexpr std::uint32_t c_lastCodePoint = 0x10FFFF;

// The compiler vectorizes loops over the local copies, because nothing else points to them.
bool CopyAsciiBlock(const char* from, wchar_t* to)
{
    if (!AreAllZero(LoadLanes<unsigned char>(from) & 0x80))
        return false;

    unsigned char block[c_blockLength];
    std::memcpy(block, from, sizeof block);
    for (std::ptrdiff_t i = 0; i < c_blockLength; ++i)
        to[i] = block[i];
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

// As signed numbers, bytes of the form 10xxxxxx are below this one, and all others are not.
constexpr signed char c_firstNonContinuation = -0x40;

// Whether all these bytes have the form 10xxxxxx.
template <typename... Bytes>
constexpr bool AreContinuations(Bytes... bytes)
{
    return ((bytes ^ 0x80u) | ...) < 0x40;
}

// The number composed of `leadBits` and the last six bits of each of `bytes`.
template <typename... Bytes>
constexpr std::uint32_t Combine(std::uint32_t leadBits, Bytes... bytes)
{
    ((leadBits = leadBits << 6 | (bytes & 0x3Fu)), ...);
    return leadBits;
}

// Reads the sequence of two to four bytes at `at` and moves past it; false when it is not valid.
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

constexpr char Continuation(std::uint32_t bits)
{
    return static_cast<char>(0x80 | (bits & 0x3F));
}

// Writes the sequence of one character and moves past it; false when it has no sequence.
inline bool EncodeCharacter(std::uint32_t character, char*& out)
{
    if (character < 0x80) {
        *out++ = static_cast<char>(character);
    } else if (character < 0x800) {
        *out++ = static_cast<char>(0xC0 | character >> 6);
        *out++ = Continuation(character);
    } else if (character < 0x10000) {
        *out++ = static_cast<char>(0xE0 | character >> 12);
        *out++ = Continuation(character >> 6);
        *out++ = Continuation(character);
    } else if (character <= c_lastCodePoint) {
        *out++ = static_cast<char>(0xF0 | character >> 18);
        *out++ = Continuation(character >> 12);
        *out++ = Continuation(character >> 6);
        *out++ = Continuation(character);
    } else {
        return false;
    }
    return true;
}

// Converts until the buffer has no room for another run or the text ends. Returns the end of what
// was written; null when `convertOne`, which writes up to `longestForm` characters, cannot go on.
template <typename From, typename To, typename ConvertOne>
To* ConvertIntoBuffer(const From*& text, const From* end, To* buffer, std::ptrdiff_t longestForm,
                      ConvertOne convertOne)
{
    const From* at = text;
    To* out = buffer;
    const To* const lastRun = buffer + c_bufferLength - c_longestRun * longestForm;
    std::ptrdiff_t run = c_blockLength;
    while (at != end && out <= lastRun) {
        if (end - at >= c_blockLength && CopyAsciiBlock(at, out)) {
            at += c_blockLength;
            out += c_blockLength;
            run = c_blockLength;
            continue;
        }
        const From* const runEnd = at + std::min(end - at, run);
        run = std::min(2 * run, c_longestRun);
        while (at < runEnd) {
            if (!convertOne(at, out))
                return nullptr;
        }
    }
    text = at;
    return out;
}

wchar_t* DecodeIntoBuffer(const char*& bytes, const char* end, wchar_t* buffer)
{
    return ConvertIntoBuffer(bytes, end, buffer, 1, [end](const char*& at, wchar_t*& out) {
        if (static_cast<signed char>(*at) < 0)
            return DecodeSequence(at, end, *out++);
        *out++ = *at++;
        return true;
    });
}

char* EncodeIntoBuffer(const wchar_t*& text, const wchar_t* end, char* buffer)
{
    return ConvertIntoBuffer(text, end, buffer, c_longestSequence,
                             [](const wchar_t*& at, char*& out) {
                                 return EncodeCharacter(static_cast<std::uint32_t>(*at++), out);
                             });
}

// The number of characters in valid UTF-8; meaningless for other bytes.
std::size_t CountCharacters(const char* at, const char* end)
{
    // The sums of so few blocks fit into bytes.
    constexpr std::ptrdiff_t longestRun = 255;
    std::size_t count = 0;
    while (end - at >= c_blockLength) {
        Lanes<unsigned char> sums = {};
        for (auto left = std::min((end - at) / c_blockLength, longestRun); left > 0; --left) {
            // A true lane has all bits set, so it counts as -1.
            const auto isFirst = LoadLanes<signed char>(at) >= c_firstNonContinuation;
            sums -= reinterpret_cast<Lanes<unsigned char>>(isFirst);
            at += c_blockLength;
        }
        for (std::ptrdiff_t i = 0; i < c_blockLength; ++i)
            count += sums[i];
    }
    return count + static_cast<std::size_t>(end - at);
}

// How many bytes to reserve when the first `characters` of `length` took `count` bytes: most texts
// continue as they begin.
//
// WideToUtf8/script:2/bytes:1000000: growing without an estimate takes 1.5 times as long.
std::size_t EstimateBytes(std::size_t count, std::ptrdiff_t characters, std::size_t length)
{
    const std::size_t estimate = length / static_cast<std::size_t>(characters) * count;
    return estimate + estimate / 16 + c_bufferLength;
}

// How many characters to reserve for a text that is longer than the buffer. A text that begins in
// ASCII probably continues so, and is not counted.
//
// Utf8ToWide/script:1/bytes:1000000: growing without an estimate takes 1.24 times as long.
std::size_t EstimateCharacters(const char* bytes, const char* end)
{
    const bool beginsInAscii = CountCharacters(bytes, bytes + c_bufferLength) == c_bufferLength;
    return beginsInAscii ? static_cast<std::size_t>(end - bytes) : CountCharacters(bytes, end);
}

// Frees what an estimate reserved too much; earlier capacity stays.
template <typename Text>
void GiveBackExcess(Text& text, std::size_t oldCapacity)
{
    if (text.capacity() > oldCapacity && text.capacity() / 2 > text.size())
        text.shrink_to_fit();
}

} // namespace

std::string EncodeUtf8(const std::wstring& text)
{
    std::string bytes;
    // The null character is searched for in the result, which has fewer bytes than the text. What
    // comes after it must not matter.
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
            bytes.reserve(oldLength + EstimateBytes(count, text - begin, length));
        bytes.append(buffer, count);
    }
    GiveBackExcess(bytes, oldCapacity);
    return true;
}

bool AppendDecodedUtf8(std::wstring& text, const char* bytes, std::size_t length)
{
    const std::size_t oldLength = text.size();
    const char* const end = bytes + length;
    const std::size_t oldCapacity = text.capacity();
    if (end - bytes > c_bufferLength)
        text.reserve(oldLength + EstimateCharacters(bytes, end));
    wchar_t buffer[c_bufferLength];
    while (bytes != end) {
        const wchar_t* const written = DecodeIntoBuffer(bytes, end, buffer);
        if (!written) {
            text.resize(oldLength);
            return false;
        }
        text.append(buffer, static_cast<std::size_t>(written - buffer));
    }
    GiveBackExcess(text, oldCapacity);
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

wchar_t TakeLongCharacter(const char*& at, const char* end)
{
    wchar_t character = 0;
    // Bytes that break the caller's promise are taken one by one.
    if (!DecodeSequence(at, end, character))
        ++at;
    return character;
}

} // namespace Toolkit::Base
