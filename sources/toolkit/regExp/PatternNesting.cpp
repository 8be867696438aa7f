#include "toolkit/regExp/PatternItems.Private.h"
#include "toolkit/regExp/PatternNesting.Private.h"

#include <algorithm>
#include <cstring>

namespace Toolkit {
namespace {

// The length of what is at `text`; 0 when it is not certain. Comments and names of verbs may
// contain anything.
std::size_t ItemLength(const char* text)
{
    switch (*text) {
    case '\\':
        return PatternItems::EscapeLength(text);
    case '[':
        return PatternItems::ClassLength(text);
    case '#':
        return 0;
    case '(':
        return text[1] == '*' ? 0 : 1;
    default:
        return 1;
    }
}

} // namespace

std::size_t DeepestNesting(const char* pattern)
{
    std::size_t depth = 0;
    std::size_t deepest = 0;
    std::size_t length = 0;
    for (; *pattern && (length = ItemLength(pattern)) > 0; pattern += length) {
        if (*pattern == '(')
            deepest = std::max(deepest, ++depth);
        else if (*pattern == ')' && depth > 0)
            --depth;
    }
    // In the rest a closing parenthesis may be an ordinary character.
    depth += static_cast<std::size_t>(std::count(pattern, pattern + std::strlen(pattern), '('));
    return std::max(deepest, depth);
}

} // namespace Toolkit
