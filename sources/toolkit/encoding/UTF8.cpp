#include "toolkit/encoding/UTF8.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace Toolkit {
namespace {

// Returns the length of `text` in UTF-8, in bytes; 0 if a character is negative or above U+10FFFF.
std::size_t GetEncodedLength(const wchar_t* text)
{
    std::size_t length = 0;
    for (; *text != L'\0'; ++text) {
        const std::uint32_t character = std::char_traits<wchar_t>::to_int_type(*text);
        if (character > 0x10FFFF)
            return 0;
        length += 1u + (character >= 0x80) + (character >= 0x800) + (character >= 0x10000);
    }
    return length;
}

} // namespace

TString<char> UTF8::ToUTF8(const TString<wchar_t>& text)
{
    return Base::TryOr({}, [&] { return TString<char>(Base::EncodeUtf8(text)); });
}

TString<wchar_t> UTF8::ToUNICODE(const TString<char>& text)
{
    return Base::TryOr({}, [&] { return TString<wchar_t>(Base::DecodeUtf8(text)); });
}

bool UTF8::HasToBeUTF8(const TString<wchar_t>& text)
{
    return GetEncodedLength(text.c_str()) > text.size();
}

} // namespace Toolkit
