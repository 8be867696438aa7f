#include "toolkit/regExp/AsciiText.Private.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace Toolkit {

bool IsAscii(const char* text, std::size_t length)
{
    constexpr std::uint64_t highBits = 0x8080808080808080;
    const char* const end = text + length;
    for (std::uint64_t bits = 0; end - text >= static_cast<std::ptrdiff_t>(sizeof bits);
         text += sizeof bits) {
        std::memcpy(&bits, text, sizeof bits);
        if (bits & highBits)
            return false;
    }
    return std::all_of(text, end, [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

} // namespace Toolkit
