// An encoded string decodes to the original. A plain reference inserts the same soft line breaks,
// and decodes any string to the same result.

#include "toolkit/encoding/QuotedPrintable.h"
#include "toolkit/encoding/UTF8.h"

#include "references/QuotedPrintable.h"
#include "support/Input.h"
#include "support/Require.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

using namespace Toolkit;
using Wide = TString<wchar_t>;

// Returns a small number, or 2^32 minus a small number.
unsigned int ReadLength(Input& input)
{
    const unsigned int value = input.ReadByte();
    return value < 0x80 ? value : value - 0x100;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t maxLength = 2000;
    Input input(data, size < maxLength ? size : maxLength);
    const unsigned int first = ReadLength(input);
    const unsigned int line = ReadLength(input);
    const TString<char> bytes = input.ReadRest();
    const Wide text = UTF8::ToUNICODE(bytes);

    const Wide code = QP::ToQP(text);
    Require(QP::ToUNICODE(code) == text);
    Require(QP::ToQP(text, first, line) == References::InsertSoftBreaks(code, first, line));
    Require(QP::ToUNICODE(text) == References::DecodeQuotedPrintable(text));

    const bool isPlain = code == text;
    const bool hasDelete = bytes.find('\x7F') != std::string::npos;
    if (bytes.find('\0') == std::string::npos && !text.empty() && !hasDelete)
        Require(QP::HasToBeQP(bytes, 1, 1, false) == !isPlain);
    return 0;
}
