#include "toolkit/encoding/QuotedPrintableCodec.Private.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace Toolkit {
namespace {

constexpr char c_hexDigits[] = "0123456789ABCDEF";
constexpr char c_escape = '=';
constexpr std::size_t c_escapeLength = 3;

constexpr unsigned int c_delete = 0x7F;

// QuotedEncode/10000, QuotedDecode/10000: appending each character to the string, without a buffer
// on the stack, takes twice as long.
constexpr std::size_t c_bufferLength = 1024;

constexpr bool IsEscapedByte(unsigned int byte)
{
    constexpr std::string_view punctuation = "\"(),/:;<=>?@[\\]";
    return byte <= 0x20 || byte >= c_delete ||
           punctuation.find(static_cast<char>(byte)) != std::string_view::npos;
}

// The encoded form of a byte: itself or its escape.
struct Form {
    char characters[c_escapeLength];
    unsigned char length;
};

constexpr auto c_forms = [] {
    std::array<Form, 256> forms{};
    for (unsigned int byte = 0; byte < forms.size(); ++byte) {
        if (IsEscapedByte(byte))
            forms[byte] = {{c_escape, c_hexDigits[byte >> 4], c_hexDigits[byte & 15]},
                           c_escapeLength};
        else
            forms[byte] = {{static_cast<char>(byte), '\0', '\0'}, 1};
    }
    return forms;
}();

// Marks a character that is not a digit. Values of digits are 0 to 16: "G" and "g" count as digits.
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

unsigned int ParseDigit(char character)
{
    return c_digits[static_cast<unsigned char>(character)];
}

// Decodes the escape at `encoded` and moves past it. Two more characters must exist; unless both
// are digits, only the "=" is skipped.
void DecodeEscape(const char*& encoded, char*& out)
{
    const unsigned int high = ParseDigit(encoded[1]);
    const unsigned int low = ParseDigit(encoded[2]);
    if (((high | low) & c_noDigit) != 0) {
        ++encoded;
        return;
    }
    *out++ = static_cast<char>(high * 16 + low);
    encoded += c_escapeLength;
}

// Decodes until the text ends or the buffer is full. An escape that the end of the text cuts short
// is copied. Returns the end of the decoded bytes.
char* DecodePiece(const char*& encoded, const char* end, char* buffer)
{
    char* out = buffer;
    const char* const bufferEnd = buffer + c_bufferLength;
    while (encoded != end && out != bufferEnd) {
        if (*encoded == c_escape && end - encoded >= static_cast<std::ptrdiff_t>(c_escapeLength))
            DecodeEscape(encoded, out);
        else
            *out++ = *encoded++;
    }
    return out;
}

// Returns `position`, or the nearest position before it that does not directly follow a "=".
std::size_t FindBreakable(const std::string& encoded, std::size_t position)
{
    while (position > 0 && encoded[position - 1] == c_escape)
        --position;
    return position;
}

// Positions in the encoded string, in ascending order. They do not count the breaks to be inserted.
using Positions = std::vector<std::size_t>;

Positions FindRightwardBreaks(const std::string& encoded, std::size_t position,
                              std::size_t lineLength)
{
    Positions breaks;
    while (position < encoded.size()) {
        breaks.push_back(FindBreakable(encoded, position));
        position = breaks.back() + lineLength - 1;
    }
    return breaks;
}

Positions FindLeftwardBreaks(const std::string& encoded, std::size_t position, std::size_t step)
{
    Positions breaks{FindBreakable(encoded, position)};
    while (breaks.back() >= step)
        breaks.push_back(FindBreakable(encoded, breaks.back() - step));
    std::reverse(breaks.begin(), breaks.end());
    return breaks;
}

Positions FindSoftBreaks(const std::string& encoded, std::uint32_t first, std::uint32_t lineLength)
{
    if (first >= encoded.size())
        return {};
    // The distance between breaks in the result: `lineLength` - 1 characters and the 3 of a break.
    // It is 32-bit and wraps around: above 0x80000000 it leads to the left. With a distance of 0 or
    // 1, breaks would be inserted at the same position forever.
    const std::uint32_t distance = lineLength + 2;
    if (distance <= 1)
        return {FindBreakable(encoded, first)};
    if (distance > 0x80000000)
        return FindLeftwardBreaks(encoded, first, 0u - distance);
    return FindRightwardBreaks(encoded, first, lineLength);
}

} // namespace

bool NeedsEscape(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    return c_forms[value].length > 1 && value != c_delete;
}

void AppendEncodedQuotedPrintable(std::string& encoded, const char* bytes, std::size_t length)
{
    constexpr std::size_t pieceLength = c_bufferLength / c_escapeLength;

    // One Form longer: memcpy() also copies the `length`, which the next form overwrites.
    char buffer[c_bufferLength + sizeof(Form)];
    while (length > 0) {
        const std::size_t piece = std::min(length, pieceLength);
        char* out = buffer;
        for (std::size_t index = 0; index < piece; ++index) {
            const Form& form = c_forms[static_cast<unsigned char>(bytes[index])];
            std::memcpy(out, &form, sizeof form);
            out += form.length;
        }
        encoded.append(buffer, out);
        bytes += piece;
        length -= piece;
    }
}

void AppendDecodedQuotedPrintable(std::string& bytes, const char* encoded, std::size_t length)
{
    const char* const end = encoded + length;
    // A "=" that is the whole text decodes to nothing.
    if (length == 1 && *encoded == c_escape)
        return;

    char buffer[c_bufferLength];
    while (encoded != end) {
        const char* const out = DecodePiece(encoded, end, buffer);
        bytes.append(static_cast<const char*>(buffer), out);
    }
}

std::string InsertSoftBreaks(const std::string& encoded, unsigned int firstLineLength,
                             unsigned int lineLength)
{
    constexpr unsigned int minLineLength = 4;
    constexpr std::string_view softBreak = "=\r\n";

    if (lineLength < minLineLength)
        return encoded;
    const Positions breaks = FindSoftBreaks(encoded, firstLineLength - 1, lineLength);
    std::string lines;
    lines.reserve(encoded.size() + softBreak.size() * breaks.size());
    std::size_t start = 0;
    for (const std::size_t position : breaks) {
        lines.append(encoded, start, position - start).append(softBreak);
        start = position;
    }
    lines.append(encoded, start);
    return lines;
}

} // namespace Toolkit
