#include "toolkit/encoding/QuotedPrintable.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/encoding/QuotedPrintableCodec.Private.h"
#include "toolkit/encoding/UTF8.h"

#include <algorithm>
#include <string>

const char* const HEX = "0123456789ABCDEF";

namespace Toolkit {
namespace {

std::string Encode(const TString<wchar_t>& text)
{
    const TString<char> bytes = UTF8::ToUTF8(text);
    std::string code;
    code.reserve(bytes.size());
    AppendEncodedQuotedPrintable(code, bytes.data(), bytes.size());
    return code;
}

} // namespace

bool QP::HasToBeQP(const TString<char>& text, unsigned int lineLength, unsigned int maxLineLength,
                   bool ignoreCharacters)
{
    if (lineLength > maxLineLength || text.find('\n') != std::string::npos)
        return true;
    return !ignoreCharacters && std::any_of(text.begin(), text.end(), NeedsEscape);
}

bool QP::HasToBeQP(const TString<wchar_t>& text, unsigned int lineLength,
                   unsigned int maxLineLength, bool)
{
    return HasToBeQP(UTF8::ToUTF8(text), lineLength, maxLineLength, true);
}

TString<wchar_t> QP::ToQP(const TString<wchar_t>& text)
{
    return Base::TryOr({}, [&] { return UTF8::ToUNICODE(Encode(text)); });
}

TString<wchar_t> QP::ToQP(const TString<wchar_t>& text, unsigned int firstLineLength,
                          unsigned int lineLength)
{
    return Base::TryOr({}, [&] {
        return UTF8::ToUNICODE(InsertSoftBreaks(Encode(text), firstLineLength, lineLength));
    });
}

TString<wchar_t> QP::ToUNICODE(const TString<wchar_t>& text)
{
    return Base::TryOr({}, [&] {
        const TString<char> code = UTF8::ToUTF8(text);
        TString<char> bytes;
        bytes.reserve(code.size());
        AppendDecodedQuotedPrintable(bytes, code.data(), code.size());
        return UTF8::ToUNICODE(bytes);
    });
}

} // namespace Toolkit
