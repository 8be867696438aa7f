#include "toolkit/base/StackSpace.h"
#include "toolkit/regExp/PatternItems.Private.h"
#include "toolkit/regExp/PatternNesting.Private.h"

#include <algorithm>
#include <cstring>

namespace Toolkit {
namespace {

// The stack that either engine uses besides the comparisons; measured: up to 12 KiB.
constexpr std::size_t c_baseSpace = std::size_t{24} * 1024;

// The stack for each compared group; measured: 152 bytes with either engine.
constexpr std::size_t c_spacePerGroup = 160;

// Neither engine compares more groups than this.
constexpr std::size_t c_maxCompared = 1000;

std::size_t CountOpenings(const char* pattern)
{
    return static_cast<std::size_t>(std::count(pattern, pattern + std::strlen(pattern), '('));
}

// Returns the length of the item at `text`; 0 when it is uncertain: comments and names of verbs
// may contain anything.
std::size_t MeasureItem(const char* text)
{
    switch (*text) {
    case '\\':
        return MeasureEscape(text);
    case '[':
        return MeasureClass(text);
    case '#':
        return 0;
    case '(':
        return text[1] == '*' ? 0 : 1;
    default:
        return 1;
    }
}

} // namespace

std::size_t MeasureNesting(const char* pattern)
{
    std::size_t depth = 0;
    std::size_t deepest = 0;
    std::size_t length = 0;
    for (; *pattern && (length = MeasureItem(pattern)) > 0; pattern += length) {
        if (*pattern == '(')
            deepest = std::max(deepest, ++depth);
        else if (*pattern == ')' && depth > 0)
            --depth;
    }
    // In the rest of the pattern, a closing parenthesis may be an ordinary character, so only the
    // opening ones count.
    depth += CountOpenings(pattern);
    return std::max(deepest, depth);
}

bool HasStackForGroups(const char* pattern)
{
    const std::size_t left = Base::GetStackSpaceLeft();
    // An eighth is left for signal handlers and the like.
    const std::size_t usable = left - left / 8;
    if (usable < c_baseSpace)
        return false;
    const std::size_t groups = (usable - c_baseSpace) / c_spacePerGroup;
    return groups >= c_maxCompared || groups >= CountOpenings(pattern);
}

} // namespace Toolkit
