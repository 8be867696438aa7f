#include "Characters.h"

namespace Tool {
namespace {

// Returns the length in bytes of a character that begins with `lead`; 0 if no character can begin
// with that byte (RFC 3629, section 4).
std::size_t GetSequenceLength(unsigned char lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead < 0xE0)
        return 2;
    if (lead >= 0xE0 && lead < 0xF0)
        return 3;
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

// False for surrogates, overlong encodings and values above U+10FFFF.
bool IsValidCode(char32_t code, std::size_t length)
{
    constexpr char32_t minCodeByLength[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xD800 && code < 0xE000;
    return code >= minCodeByLength[length] && code <= 0x10FFFF && !isSurrogate;
}

} // namespace

Character ReadCharacter(std::string_view& text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = GetSequenceLength(lead);
    bool isValid = length > 0 && length <= text.size();
    // The first of n bytes carries 7 - n bits of the code, if there are several.
    char32_t code = length < 2 ? lead : lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; isValid && i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        isValid = (next & 0xC0) == 0x80;
        code = code << 6 | (next & 0x3F);
    }
    isValid = isValid && IsValidCode(code, length);
    const std::string_view bytes = text.substr(0, isValid ? length : 1);
    text.remove_prefix(bytes.size());
    return {isValid ? code : lead, isValid, bytes};
}

bool IsUnsafeForTerminal(char32_t code)
{
    const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
    const bool isSeparator = code == 0x2028 || code == 0x2029;
    const bool isBidiControl = code == 0x061C || (code >= 0x200E && code <= 0x200F) ||
                               (code >= 0x202A && code <= 0x202E) ||
                               (code >= 0x2066 && code <= 0x2069);
    const bool isByteOrderMark = code == 0xFEFF;
    return isControl || isSeparator || isBidiControl || isByteOrderMark;
}

} // namespace Tool
