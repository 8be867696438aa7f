#include "Json.h"

#include "Characters.h"

namespace Tool {
namespace {

void AppendEscape(std::string& target, char32_t code)
{
    constexpr const char* digits = "0123456789abcdef";
    constexpr int firstShift = 12;

    target += "\\u";
    for (int shift = firstShift; shift >= 0; shift -= 4)
        target += digits[code >> shift & 0xF];
}

} // namespace

void AppendJson(std::string& target, std::string_view text)
{
    target += '"';
    while (!text.empty()) {
        const Character first = ReadCharacter(text);
        if (!first.isValid)
            AppendEscape(target, 0xFFFD);
        else if (IsUnsafeForTerminal(first.code))
            AppendEscape(target, first.code);
        else if (first.code == '"' || first.code == '\\')
            target.append("\\").append(first.bytes);
        else
            target.append(first.bytes);
    }
    target += '"';
}

} // namespace Tool
