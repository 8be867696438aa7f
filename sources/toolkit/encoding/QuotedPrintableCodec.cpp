#include "toolkit/encoding/QuotedPrintableCodec.Private.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

namespace Toolkit::QuotedPrintableCodec {
namespace {

constexpr char c_hexDigits[] = "0123456789ABCDEF";
constexpr char c_escape = '=';
constexpr std::size_t c_escapeLength = 3;

constexpr unsigned int c_delete = 0x7F;

// Results go through a buffer on the stack: appending from it is faster than resizing the string
// first, which fills it with zeros.
constexpr std::size_t c_bufferLength = 1024;

constexpr bool IsQuotedByte(unsigned int byte)
{
    constexpr char quoted[] = "\"(),/:;<=>?@[\\]";
    const bool isListed =
        std::find(quoted, std::end(quoted) - 1, static_cast<char>(byte)) != std::end(quoted) - 1;
    return byte <= 0x20 || byte >= 0x80 || isListed;
}

// The encoded form of a byte: itself or its escape.
struct Form {
    char characters[c_escapeLength];
    unsigned char length;
};

constexpr auto c_forms = [] {
    std::array<Form, 256> forms{};
    for (unsigned int byte = 0; byte < forms.size(); ++byte) {
        if (IsQuotedByte(byte) || byte == c_delete)
            forms[byte] = {{c_escape, c_hexDigits[byte >> 4], c_hexDigits[byte & 15]}, 3};
        else
            forms[byte] = {{static_cast<char>(byte), '\0', '\0'}, 1};
    }
    return forms;
}();

// Marks a character that is not a digit. Digits are 0 to 16: "G" and "g" are digits, too.
constexpr unsigned char c_noDigit = 0x80;

constexpr auto c_digits = [] {
    std::array<unsigned char, 256> digits{};
    digits.fill(c_noDigit);
    for (unsigned char value = 0; value < 10; ++value)
        digits[static_cast<unsigned char>('0' + value)] = value;
    for (unsigned char value = 10; value < 17; ++value) {
        digits[static_cast<unsigned char>('A' + value - 10)] = value;
        digits[static_cast<unsigned char>('a' + value - 10)] = value;
    }
    return digits;
}();

unsigned int Digit(char character)
{
    return c_digits[static_cast<unsigned char>(character)];
}

// Texts are searched for escapes in blocks of this many characters.
constexpr std::size_t c_blockLength = 64;

// The step in which a run is copied. The last step may go beyond its end.
constexpr std::size_t c_stepLength = 8;

// The room that a block needs in the text and in the buffer.
constexpr std::ptrdiff_t c_blockRoom = c_blockLength + c_stepLength;

// One bit per character of the eight at `code`, set if it begins an escape. The first is lowest.
inline std::uint64_t EscapesOfStep(const char* code)
{
    constexpr std::uint64_t ones = 0x0101010101010101;
    constexpr std::uint64_t lowBits = 0x7F * ones;

    std::uint64_t word = 0;
    for (unsigned int index = 0; index < c_stepLength; ++index)
        word |= std::uint64_t{static_cast<unsigned char>(code[index])} << 8 * index;
    const std::uint64_t difference = word ^ ones * static_cast<unsigned char>(c_escape);
    // Sets the highest bit of each zero byte, without carries between bytes.
    const std::uint64_t zeros = ~(((difference & lowBits) + lowBits) | difference | lowBits);
    // The multiplication collects the eight bits in the highest byte.
    return (zeros >> 7) * 0x0102040810204080 >> 56;
}

inline std::uint64_t EscapesOfBlock(const char* code)
{
    std::uint64_t escapes = 0;
    for (std::size_t place = 0; place < c_blockLength; place += c_stepLength)
        escapes |= EscapesOfStep(code + place) << place;
    return escapes;
}

// Copies the characters up to `end`. Source and target need room for one more step.
inline char* CopyRun(const char* code, const char* end, char* out)
{
    const auto length = static_cast<std::size_t>(end - code);
    std::memcpy(out, code, c_stepLength);
    if (length > c_stepLength) [[unlikely]]
        std::memcpy(out + c_stepLength, code + c_stepLength, length - c_stepLength);
    return out + length;
}

// Decodes the escape at `code`, which two more characters follow, and moves past it; past one
// character when it is not an escape.
inline void DecodeEscape(const char*& code, char*& out)
{
    const unsigned int high = Digit(code[1]);
    const unsigned int low = Digit(code[2]);
    // A branch, so that the next escape does not wait for these digits.
    if (((high | low) & c_noDigit) != 0) [[unlikely]] {
        ++code;
        return;
    }
    *out++ = static_cast<char>(high * 16 + low);
    code += c_escapeLength;
}

// Decodes blocks until the buffer is full or the text is near its end. "=" is not a digit, so every
// "=" begins an escape, and all escapes of a block are known in advance.
char* DecodeBlocks(const char*& code, const char* end, char* buffer)
{
    char* out = buffer;
    const char* const bufferEnd = buffer + c_bufferLength;
    while (end - code >= c_blockRoom && bufferEnd - out >= c_blockRoom) {
        const char* const block = code;
        for (std::uint64_t left = EscapesOfBlock(block); left != 0; left &= left - 1) {
            const char* const escape = block + std::countr_zero(left);
            out = CopyRun(code, escape, out);
            code = escape;
            DecodeEscape(code, out);
        }
        const char* const blockEnd = block + c_blockLength;
        if (code < blockEnd) {
            out = CopyRun(code, blockEnd, out);
            code = blockEnd;
        }
    }
    return out;
}

// The last characters one by one: an escape that is cut short is copied as it is.
char* DecodeEnd(const char* code, const char* end, char* buffer)
{
    char* out = buffer;
    while (code != end) {
        if (*code == c_escape && end - code >= 3)
            DecodeEscape(code, out);
        else
            *out++ = *code++;
    }
    return out;
}

// The first position at or before `position` that does not directly follow a "=".
std::size_t BreakableBefore(const std::string& code, std::size_t position)
{
    while (position > 0 && code[position - 1] == c_escape)
        --position;
    return position;
}

using Positions = std::vector<std::size_t>;

// Positions in `code` itself, without the breaks before them.
Positions RightwardBreaks(const std::string& code, std::size_t position, std::size_t lineLength)
{
    Positions breaks;
    while (position < code.size()) {
        breaks.push_back(BreakableBefore(code, position));
        position = breaks.back() + lineLength - 1;
    }
    return breaks;
}

Positions LeftwardBreaks(const std::string& code, std::size_t position, std::size_t step)
{
    Positions breaks{BreakableBefore(code, position)};
    while (breaks.back() >= step)
        breaks.push_back(BreakableBefore(code, breaks.back() - step));
    std::reverse(breaks.begin(), breaks.end());
    return breaks;
}

Positions SoftBreaks(const std::string& code, std::uint32_t first, std::uint32_t lineLength)
{
    if (first >= code.size())
        return {};
    // The distance to the next position has 32 bits. In its upper half it leads to the left; a
    // distance of 0 or 1 would lead to the same position forever.
    const std::uint32_t distance = lineLength + 2;
    if (distance <= 1)
        return {BreakableBefore(code, first)};
    if (distance > 0x80000000)
        return LeftwardBreaks(code, first, 0u - distance);
    return RightwardBreaks(code, first, lineLength);
}

} // namespace

bool IsQuoted(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    return c_forms[value].length > 1 && value != c_delete;
}

void AppendEncoded(std::string& code, const char* bytes, std::size_t length)
{
    constexpr std::size_t pieceLength = c_bufferLength / c_escapeLength;

    // Copies a form together with its length, which the next form overwrites.
    char buffer[c_bufferLength + sizeof(Form)];
    while (length > 0) {
        const std::size_t piece = std::min(length, pieceLength);
        char* out = buffer;
        for (std::size_t index = 0; index < piece; ++index) {
            const Form& form = c_forms[static_cast<unsigned char>(bytes[index])];
            std::memcpy(out, &form, sizeof form);
            out += form.length;
        }
        code.append(buffer, out);
        bytes += piece;
        length -= piece;
    }
}

void AppendDecoded(std::string& bytes, const char* code, std::size_t length)
{
    const char* const end = code + length;
    // A "=" that is the whole text decodes to nothing.
    if (length == 1 && *code == c_escape)
        return;

    char buffer[c_bufferLength];
    while (end - code >= c_blockRoom) {
        const char* const out = DecodeBlocks(code, end, buffer);
        bytes.append(static_cast<const char*>(buffer), out);
    }
    const char* const out = DecodeEnd(code, end, buffer);
    bytes.append(static_cast<const char*>(buffer), out);
}

std::string WithSoftBreaks(const std::string& code, unsigned int firstLineLength,
                           unsigned int lineLength)
{
    constexpr unsigned int shortestLine = 4;
    constexpr char softBreak[] = "=\r\n";

    if (lineLength < shortestLine)
        return code;
    const Positions breaks = SoftBreaks(code, firstLineLength - 1, lineLength);
    std::string lines;
    lines.reserve(code.size() + 3 * breaks.size());
    std::size_t start = 0;
    for (const std::size_t position : breaks) {
        lines.append(code, start, position - start).append(softBreak);
        start = position;
    }
    lines.append(code, start);
    return lines;
}

} // namespace Toolkit::QuotedPrintableCodec
