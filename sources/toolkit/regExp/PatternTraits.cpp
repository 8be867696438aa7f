#include "toolkit/regExp/PatternTraits.Private.h"

#include <cstring>
#include <string_view>

namespace Toolkit {
namespace {

// Letters and digits after a backslash that mean characters, kinds of characters, earlier groups or
// the end of the subject. Among the others are boundaries (\b \B \A \G), \K, \C, quotation (\Q \E),
// and \c, which includes the next character.
constexpr std::string_view c_harmlessEscapes = "dDwWsShHvVNRrntfepPxzZ0123456789";

bool IsAsciiLetterOrDigit(char character)
{
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
}

bool IsHarmlessEscape(char character)
{
    return !IsAsciiLetterOrDigit(character) ||
           c_harmlessEscapes.find(character) != std::string_view::npos;
}

// False for verbs, callouts and look-behinds; `text` follows an opening parenthesis.
bool IsHarmlessParenthesis(const char* text)
{
    if (*text == '*')
        return false;
    for (const std::string_view construct : {"?<=", "?<!", "?<*", "?C"}) {
        if (std::strncmp(text, construct.data(), construct.size()) == 0)
            return false;
    }
    return true;
}

// Word boundaries written as classes: [[:<:]] and [[:>:]].
bool IsWordBoundary(const char* text)
{
    constexpr std::size_t length = 5;
    return std::strncmp(text, "[:<:]", length) == 0 || std::strncmp(text, "[:>:]", length) == 0;
}

} // namespace

bool MatchesWholeCharacters(const char* pattern)
{
    return !std::strstr(pattern, "\\C");
}

bool IgnoresPrecedingText(const char* pattern)
{
    char previous = '\0';
    for (; *pattern; ++pattern) {
        const char character = *pattern;
        if (character == '\\') {
            ++pattern;
            if (!*pattern || !IsHarmlessEscape(*pattern))
                return false;
            previous = '\0';
            continue;
        }
        // "^" is an anchor unless it is the first character of a class.
        if (character == '^' && previous != '[')
            return false;
        if (character == '(' && !IsHarmlessParenthesis(pattern + 1))
            return false;
        if (IsWordBoundary(pattern))
            return false;
        previous = character;
    }
    return true;
}

} // namespace Toolkit
