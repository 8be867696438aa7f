// Valid bytes decode to characters that encode to the same bytes; invalid bytes decode to an empty
// string. The string ends at its first null byte.

#include "toolkit/encoding/UTF8.h"

#include "support/Require.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

constexpr std::size_t c_invalid = 0;

// Returns the length of the sequence at `offset`, by the rules of RFC 3629.
std::size_t GetSequenceLength(const std::string& bytes, std::size_t offset)
{
    constexpr std::uint32_t smallestValues[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<std::uint8_t>(bytes[offset]);
    if (lead < 0x80)
        return 1;
    const auto length = static_cast<std::size_t>(std::countl_one(lead));
    if (length < 2 || length > 4 || offset + length > bytes.size())
        return c_invalid;
    std::uint32_t value = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<std::uint8_t>(bytes[offset + i]);
        if (std::countl_one(byte) != 1)
            return c_invalid;
        value = value << 6 | (byte & 0x3Fu);
    }
    const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
    return value < smallestValues[length] || value > 0x10FFFF || isSurrogate ? c_invalid : length;
}

bool IsValid(const std::string& bytes)
{
    std::size_t offset = 0;
    while (offset < bytes.size()) {
        const std::size_t length = GetSequenceLength(bytes, offset);
        if (length == c_invalid)
            return false;
        offset += length;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace Toolkit;
    const TString<char> bytes(std::string(reinterpret_cast<const char*>(data), size));
    const std::string front(bytes.c_str());

    const TString<wchar_t> text = UTF8::ToUNICODE(bytes);

    Require(text.empty() == (front.empty() || !IsValid(front)));
    if (!text.empty())
        Require(UTF8::ToUTF8(text) == front);
    return 0;
}
