#include "toolkit/regExp/PatternItems.Private.h"

#include <cstring>

namespace Toolkit {
namespace {

// Returns the length of a class such as "[:alpha:]"; 0 for anything else.
std::size_t MeasureNamedClass(const char* text)
{
    if (text[1] != ':')
        return 0;
    const std::size_t name = 2 + std::strspn(text + 2, "^<>abcdefghijklmnopqrstuvwxyz");
    return text[name] == ':' && text[name + 1] == ']' ? name + 2 : 0;
}

// Returns the length of the item at `text` in a character class; 0 when it is uncertain.
std::size_t MeasureClassItem(const char* text)
{
    switch (*text) {
    case '\0':
        return 0;
    case '\\':
        return MeasureEscape(text);
    case '[':
        // An ordinary character, except before the marks of "[:alpha:]", "[.a.]" and "[=a=]".
        return std::strchr(":.=", text[1]) ? MeasureNamedClass(text) : 1;
    default:
        return 1;
    }
}

} // namespace

std::size_t MeasureEscape(const char* text)
{
    return text[1] == '\0' || std::strchr("QEc", text[1]) ? 0 : 2;
}

std::size_t MeasureSet(const char* text)
{
    if (text[0] == '[')
        return MeasureNamedClass(text);
    if (text[0] != '\\' || text[1] == '\0' || !std::strchr("dDhHpPsSvVwW", text[1]))
        return 0;
    if (text[1] != 'p' && text[1] != 'P')
        return 2;
    const char* const close = text[2] == '{' ? std::strchr(text, '}') : text + 2;
    return close && *close ? static_cast<std::size_t>(close - text) + 1 : 0;
}

std::size_t MeasureClass(const char* text)
{
    std::size_t length = text[1] == '^' ? 2 : 1;
    // A "]" at the beginning is an ordinary character.
    if (text[length] == ']')
        ++length;
    while (text[length] != ']') {
        const std::size_t step = MeasureClassItem(text + length);
        if (step == 0)
            return 0;
        length += step;
    }
    return length + 1;
}

} // namespace Toolkit
