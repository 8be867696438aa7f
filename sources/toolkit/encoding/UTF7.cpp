#include "toolkit/encoding/UTF7.h"

#include "toolkit/base/OutOfMemory.h"

#include <cstddef>
#include <cstring>

namespace Toolkit {

TString<char> UTF7::ToUTF7(const TString<wchar_t>& text)
{
    return Base::TryOr({}, [&] {
        TString<char> bytes;
        bytes.reserve(text.size());
        for (const wchar_t character : text) {
            const bool isAscii = character >= 0 && character <= 0x7F;
            bytes.push_back(isAscii ? static_cast<char>(character) : '_');
        }
        return bytes;
    });
}

TString<wchar_t> UTF7::ToUNICODE(const TString<char>& text)
{
    return Base::TryOr({}, [&] {
        const std::size_t length = std::strlen(text.c_str());
        TString<wchar_t> characters;
        characters.reserve(length);
        for (std::size_t i = 0; i < length; ++i)
            characters.push_back(static_cast<unsigned char>(text[i]));
        return characters;
    });
}

} // namespace Toolkit
