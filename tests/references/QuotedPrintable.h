#pragma once

#include "toolkit/core/TString.h"
#include "toolkit/encoding/UTF8.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

// A plain reference implementation of quoted-printable, one character at a time.
namespace Toolkit::References {

// The 7-bit values for which HasToBeQP() returns true, as a set of bits: value v is bit v & 7 of
// byte v >> 3. 0x7F is not one of them, although it is escaped.
inline constexpr unsigned char c_mustBeEscaped[16] = {
    0xFF, 0xFF, 0xFF, 0xFF, 0x05, 0x93, 0x00, 0xFC, 0x01, 0x00, 0x00, 0x38, 0x00, 0x00, 0x00, 0x00};

inline bool MustBeEscaped(unsigned char byte)
{
    return byte >= 0x80 || (c_mustBeEscaped[byte >> 3] >> (byte & 7) & 1) != 0;
}

inline TString<wchar_t> EncodeQuotedPrintable(const TString<wchar_t>& text)
{
    std::string code;
    for (const char character : UTF8::ToUTF8(text)) {
        const auto byte = static_cast<unsigned char>(character);
        char escape[4];
        std::snprintf(escape, sizeof escape, "=%02X", byte);
        code += byte >= 0x7F || MustBeEscaped(byte) ? escape : std::string(1, character);
    }
    return {std::wstring(code.begin(), code.end())};
}

// "G" counts as a digit too, with the value 16.
inline int DigitOf(char character)
{
    const std::string digits = "0123456789ABCDEFG0123456789abcdefg";
    const std::size_t index = digits.find(character);
    return index == std::string::npos || character == '\0' ? -1 : static_cast<int>(index % 17);
}

inline TString<wchar_t> DecodeQuotedPrintable(const TString<wchar_t>& text)
{
    const std::string code = UTF8::ToUTF8(text);
    std::string bytes;
    for (std::size_t index = 0; index < code.size();) {
        // For a string of one "=" the difference wraps around, so that "=" is dropped.
        if (code[index] != '=' || code.size() - 2 <= index) {
            bytes += code[index++];
            continue;
        }
        const int high = DigitOf(code.c_str()[index + 1]);
        const int low = high < 0 ? -1 : DigitOf(code.c_str()[index + 2]);
        if (low >= 0)
            bytes += static_cast<char>(high * 16 + low);
        index += low >= 0 ? 3 : 1;
    }
    return UTF8::ToUNICODE(bytes);
}

// Inserts the breaks one at a time. If `position` would wrap around and never reach the end,
// inserts only the first.
inline TString<wchar_t> InsertSoftBreaks(TString<wchar_t> result, std::uint32_t firstLineLength,
                                         std::uint32_t lineLength)
{
    if (lineLength < 4)
        return result;
    std::uint32_t position = firstLineLength - 1;
    while (result.size() > position) {
        while (position > 0 && result[position - 1] == L'=')
            --position;
        result.insert(position, L"=\r\n");
        position = position + lineLength + 2;
        if (lineLength >= 0xFFFFFFFE)
            break;
    }
    return result;
}

} // namespace Toolkit::References
