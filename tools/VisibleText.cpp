#include "VisibleText.h"

#include <algorithm>

#include "Characters.h"

namespace Tool {
namespace {

bool IsPrintableAscii(char character)
{
    return character >= 0x20 && character < 0x7F;
}

void AppendEscape(std::string& target, char32_t code)
{
    constexpr const char* digits = "0123456789ABCDEF";

    target += "\\x";
    for (int shift = code > 0xFF ? 12 : 4; shift >= 0; shift -= 4)
        target += digits[code >> shift & 0xF];
}

} // namespace

void AppendVisible(std::string& target, std::string_view text)
{
    while (!text.empty()) {
        const auto plainLength = static_cast<std::size_t>(
            std::find_if_not(text.begin(), text.end(), IsPrintableAscii) - text.begin());
        target.append(text.substr(0, plainLength));
        text.remove_prefix(plainLength);
        if (text.empty())
            return;
        const Character first = ReadCharacter(text);
        if (!first.isValid || IsUnsafeForTerminal(first.code))
            AppendEscape(target, first.code);
        else
            target.append(first.bytes);
    }
}

std::string MakeVisible(std::string_view text)
{
    std::string visible;
    AppendVisible(visible, text);
    return visible;
}

} // namespace Tool
