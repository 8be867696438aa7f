#include "toolkit/regExp/PatternItems.Private.h"
#include "toolkit/regExp/Pcre2Syntax.Private.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <string_view>

namespace Toolkit {
namespace {

constexpr int c_newlineMask = 0x00700000;
constexpr int c_lastNewline = 0x00500000;
constexpr int c_breakMask = 0x01800000;

struct Setting {
    int mask;
    int option;
    std::string_view text;
};

// The options of pcre_exec() in pcreapi(3).
constexpr Setting c_settings[] = {
    {c_newlineMask, 0x00100000, "(*CR)"},        {c_newlineMask, 0x00200000, "(*LF)"},
    {c_newlineMask, 0x00300000, "(*CRLF)"},      {c_newlineMask, 0x00400000, "(*ANY)"},
    {c_newlineMask, 0x00500000, "(*ANYCRLF)"},   {c_breakMask, 0x00800000, "(*BSR_ANYCRLF)"},
    {c_breakMask, 0x01000000, "(*BSR_UNICODE)"}, {0x04000000, 0x04000000, "(*NO_START_OPT)"}};

// pcre2pattern(3), "Special start-of-pattern items", and PCRE 1's "UTF8".
constexpr std::string_view c_settingNames[] = {"UTF",
                                               "UTF8",
                                               "UCP",
                                               "NO_AUTO_POSSESS",
                                               "NO_DOTSTAR_ANCHOR",
                                               "NO_START_OPT",
                                               "NO_JIT",
                                               "NOTEMPTY",
                                               "NOTEMPTY_ATSTART",
                                               "LIMIT_MATCH",
                                               "LIMIT_DEPTH",
                                               "LIMIT_HEAP",
                                               "LIMIT_RECURSION",
                                               "CR",
                                               "LF",
                                               "CRLF",
                                               "ANY",
                                               "ANYCRLF",
                                               "NUL",
                                               "BSR_ANYCRLF",
                                               "BSR_UNICODE"};

// Returns the end of the settings at the beginning of the pattern.
std::size_t FindEndOfSettings(std::string_view pattern)
{
    std::size_t end = 0;
    while (pattern.substr(end, 2) == "(*") {
        const std::size_t close = pattern.find(')', end);
        const std::size_t nameEnd = std::min(pattern.find('=', end), close);
        if (close == std::string_view::npos)
            break;
        const std::string_view name = pattern.substr(end + 2, nameEnd - end - 2);
        if (std::find(std::begin(c_settingNames), std::end(c_settingNames), name) ==
            std::end(c_settingNames))
            break;
        end = close + 1;
    }
    return end;
}

std::string TranslateSettings(std::string pattern)
{
    if (pattern.compare(0, 2, "(*") != 0)
        return pattern;
    constexpr std::string_view old = "(*UTF8)";
    for (std::size_t at = pattern.find(old); at < FindEndOfSettings(pattern);
         at = pattern.find(old))
        pattern.replace(at, old.size(), "(*UTF)");
    return pattern;
}

// Whether a hyphen follows what may be the end of a set such as \w, \pL, \p{L} or [:alpha:].
bool MayHaveHyphenAfterSet(const std::string& pattern)
{
    const char* const begin = pattern.c_str();
    for (const char* at = std::strchr(begin, '-'); at; at = std::strchr(at + 1, '-')) {
        const std::ptrdiff_t length = std::min<std::ptrdiff_t>(at - begin, 3);
        const std::string_view before(at - length, static_cast<std::size_t>(length));
        if (before.find('\\') != std::string_view::npos || before.ends_with('}') ||
            before.ends_with(":]"))
            return true;
    }
    return false;
}

// Escapes the hyphens after sets. In a class, as in "[\w-.]", PCRE 1 treats such a hyphen as an
// ordinary character, and PCRE 2 rejects it. Elsewhere the escape changes nothing.
std::string EscapeHyphens(std::string pattern)
{
    if (!MayHaveHyphenAfterSet(pattern))
        return pattern;
    std::string escaped;
    const char* rest = pattern.c_str();
    while (*rest) {
        const std::size_t set = MeasureSet(rest);
        const std::size_t length = set > 0 ? set : *rest == '\\' ? MeasureEscape(rest) : 1;
        // Stops at an escape such as \Q, after which characters have another meaning.
        if (length == 0)
            break;
        escaped.append(rest, length);
        rest += length;
        if (set > 0 && *rest == '-')
            escaped += '\\';
    }
    return escaped + rest;
}

} // namespace

bool AreNewlinesKnown(int options)
{
    return (options & c_newlineMask) <= c_lastNewline && (options & c_breakMask) != c_breakMask;
}

std::string TranslateToPcre2(const std::string& pattern)
{
    return EscapeHyphens(TranslateSettings(pattern));
}

std::string AddPatternSettings(std::string pattern, int options)
{
    std::string settings;
    for (const Setting& setting : c_settings) {
        if ((options & setting.mask) == setting.option)
            settings += setting.text;
    }
    return pattern.insert(FindEndOfSettings(pattern), settings);
}

} // namespace Toolkit
