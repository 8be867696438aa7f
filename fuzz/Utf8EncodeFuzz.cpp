// Encoded text decodes to the same text, unless it contains surrogates; only values above 0x10FFFF
// or below 0 cannot be encoded.

#include "toolkit/encoding/UTF8.h"

#include "support/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

bool IsEncodable(wchar_t character)
{
    return character > 0 && character <= 0x10FFFF;
}

bool IsSurrogate(wchar_t character)
{
    return character >= 0xD800 && character <= 0xDFFF;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace Toolkit;
    std::wstring text(size / sizeof(wchar_t), L'\0');
    if (!text.empty())
        std::memcpy(text.data(), data, text.size() * sizeof(wchar_t));

    const TString<char> bytes = UTF8::ToUTF8(text);

    const std::wstring front(text.c_str());
    const bool isEncodable = std::all_of(front.begin(), front.end(), IsEncodable);
    const bool isDecodable = std::none_of(front.begin(), front.end(), IsSurrogate);
    Require(bytes.empty() == (front.empty() || !isEncodable));
    if (isEncodable)
        Require(UTF8::ToUNICODE(bytes) == (isDecodable ? front : std::wstring()));
    Require(UTF8::HasToBeUTF8(text) == (bytes.size() > text.size()));
    return 0;
}
