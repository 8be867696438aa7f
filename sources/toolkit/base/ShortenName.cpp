#include "toolkit/base/ShortenName.h"

#include <cstdint>
#include <cstdio>

namespace Toolkit::Base {
namespace {

constexpr std::size_t c_hashDigits = 16;

// FNV-1a, 64 bits: http://www.isthe.com/chongo/tech/comp/fnv
std::uint64_t HashBytes(const std::string& text)
{
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char character : text) {
        hash ^= static_cast<unsigned char>(character);
        hash *= 0x100000001B3;
    }
    return hash;
}

} // namespace

std::string ShortenName(const std::string& name, std::size_t maxLength)
{
    if (name.size() <= maxLength)
        return name;
    return name.substr(0, maxLength - c_hashDigits) + FormatHash(name);
}

std::string FormatHash(const std::string& text)
{
    char digits[c_hashDigits + 1];
    std::snprintf(digits, sizeof digits, "%016llx",
                  static_cast<unsigned long long>(HashBytes(text)));
    return digits;
}

} // namespace Toolkit::Base
