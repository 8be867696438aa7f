#include "toolkit/encoding/QuotedPrintable.h"

#include "toolkit/encoding/QuotedPrintableCodec.Private.h"
#include "toolkit/encoding/UTF8.h"

#include <algorithm>
#include <new>
#include <string>

const char* const HEX = "0123456789ABCDEF";

namespace Toolkit {
namespace {

std::string Encode(const TString<wchar_t>& text)
{
    const TString<char> bytes = UTF8::ToUTF8(text);
    std::string code;
    code.reserve(bytes.size());
    QuotedPrintableCodec::AppendEncoded(code, bytes.data(), bytes.size());
    return code;
}

} // namespace

bool QP::HasToBeQP(const TString<char>& text, unsigned int lineLength, unsigned int maxLineLength,
                   bool ignoreCharacters)
{
    if (lineLength > maxLineLength || text.find('\n') != std::string::npos)
        return true;
    return !ignoreCharacters &&
           std::any_of(text.begin(), text.end(), QuotedPrintableCodec::IsQuoted);
}

bool QP::HasToBeQP(const TString<wchar_t>& text, unsigned int lineLength,
                   unsigned int maxLineLength, bool)
try {
    return HasToBeQP(UTF8::ToUTF8(text), lineLength, maxLineLength, true);
} catch (const std::bad_alloc&) {
    return false;
}

TString<wchar_t> QP::ToQP(const TString<wchar_t>& text)
try {
    return UTF8::ToUNICODE(Encode(text));
} catch (const std::bad_alloc&) {
    return {};
}

TString<wchar_t> QP::ToQP(const TString<wchar_t>& text, unsigned int firstLineLength,
                          unsigned int lineLength)
try {
    return UTF8::ToUNICODE(
        QuotedPrintableCodec::WithSoftBreaks(Encode(text), firstLineLength, lineLength));
} catch (const std::bad_alloc&) {
    return {};
}

TString<wchar_t> QP::ToUNICODE(const TString<wchar_t>& text)
try {
    const TString<char> code = UTF8::ToUTF8(text);
    TString<char> bytes;
    bytes.reserve(code.size());
    QuotedPrintableCodec::AppendDecoded(bytes, code.data(), code.size());
    return UTF8::ToUNICODE(bytes);
} catch (const std::bad_alloc&) {
    return {};
}

} // namespace Toolkit
