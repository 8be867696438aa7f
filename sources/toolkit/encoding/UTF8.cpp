#include "toolkit/encoding/UTF8.h"

#include "toolkit/encoding/Utf8Codec.Private.h"

#include <cstdint>
#include <cstring>
#include <cwchar>

namespace Toolkit {
namespace {

// How many bytes the UTF-8 form has; 0 when there is none.
std::size_t EncodedLength(const wchar_t* text)
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
    TString<char> bytes;
    // The bytes are searched for the null character, since they are fewer than those of the text;
    // what stands behind it must not matter.
    if (!Utf8Codec::AppendEncoded(bytes, text.data(), text.size()))
        Utf8Codec::AppendEncoded(bytes, text.c_str(), std::wcslen(text.c_str()));
    bytes.resize(std::strlen(bytes.c_str()));
    return bytes;
}

TString<wchar_t> UTF8::ToUNICODE(const TString<char>& text)
{
    TString<wchar_t> characters;
    Utf8Codec::AppendDecoded(characters, text.c_str(), std::strlen(text.c_str()));
    return characters;
}

bool UTF8::HasToBeUTF8(const TString<wchar_t>& text)
{
    return EncodedLength(text.c_str()) > text.size();
}

} // namespace Toolkit
