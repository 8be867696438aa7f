// A text comes back from its quoted-printable form; soft line breaks are those of the insertions
// done one after the other; any text decodes as the rules say.

#include "toolkit/encoding/QuotedPrintable.h"
#include "toolkit/encoding/UTF8.h"

#include "support/Input.h"
#include "support/Require.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

using namespace Toolkit;
using Wide = TString<wchar_t>;

// A small number, or one that is as far below 2 to the power of 32.
unsigned int Length(Input& input)
{
    const unsigned int value = input.Byte();
    return value < 0x80 ? value : value - 0x100;
}

Wide ReferenceLines(Wide code, std::uint32_t firstLineLength, std::uint32_t lineLength)
{
    if (lineLength < 4)
        return code;
    std::uint32_t position = firstLineLength - 1;
    while (code.size() > position) {
        while (position > 0 && code[position - 1] == L'=')
            --position;
        code.insert(position, L"=\r\n");
        position = position + lineLength + 2;
        if (lineLength >= 0xFFFFFFFE)
            break;
    }
    return code;
}

// The value of a digit, "G" included; -1 for anything else.
int Digit(char character)
{
    if (character >= '0' && character <= '9')
        return character - '0';
    if (character >= 'A' && character <= 'G')
        return character - 'A' + 10;
    return character >= 'a' && character <= 'g' ? character - 'a' + 10 : -1;
}

std::string ReferenceDecode(const std::string& code)
{
    if (code == "=")
        return "";
    std::string bytes;
    for (std::size_t index = 0; index < code.size(); ++index) {
        if (code[index] != '=' || index + 2 >= code.size()) {
            bytes += code[index];
            continue;
        }
        const int high = Digit(code[index + 1]);
        const int low = Digit(code[index + 2]);
        if (high < 0 || low < 0)
            continue;
        bytes += static_cast<char>(high * 16 + low);
        index += 2;
    }
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t longest = 2000;
    Input input(data, size < longest ? size : longest);
    const unsigned int first = Length(input);
    const unsigned int line = Length(input);
    const TString<char> bytes = input.Rest();
    const Wide text = UTF8::ToUNICODE(bytes);

    const Wide code = QP::ToQP(text);
    Require(QP::ToUNICODE(code) == text);
    Require(QP::ToQP(text, first, line) == ReferenceLines(code, first, line));
    Require(QP::ToUNICODE(text) == UTF8::ToUNICODE(ReferenceDecode(UTF8::ToUTF8(text))));

    const bool isPlain = code == text;
    const bool hasDelete = bytes.find('\x7F') != std::string::npos;
    if (bytes.find('\0') == std::string::npos && !text.empty() && !hasDelete)
        Require(QP::HasToBeQP(bytes, 1, 1, false) == !isPlain);
    return 0;
}
