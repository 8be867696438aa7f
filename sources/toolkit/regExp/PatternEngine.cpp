#include "toolkit/base/StackSpace.h"
#include "toolkit/regExp/PatternEngine.Private.h"

#include <pcre.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace Toolkit::PatternEngine {
namespace {

static_assert(c_noMatch == PCRE_ERROR_NOMATCH);
static_assert(c_outOfMemory == PCRE_ERROR_NOMEMORY);
static_assert(c_notAtLineBegin == PCRE_NOTBOL);
static_assert(c_notAtLineEnd == PCRE_NOTEOL);
static_assert(c_notEmpty == PCRE_NOTEMPTY);
static_assert(c_trusted == PCRE_NO_UTF8_CHECK);

// The engine's own default: some hundred milliseconds for a pattern that tries everything.
constexpr unsigned long c_matchLimit = 10'000'000;

// What compiling and matching take before they begin to recurse; 6 KiB were measured.
constexpr std::size_t c_baseSpace = std::size_t{12} * 1024;

// What compiling takes for one more level of parentheses; 752 bytes were measured.
constexpr std::size_t c_compileSpacePerLevel = 800;

// The engine itself refuses deeper nesting.
constexpr std::size_t c_deepestNesting = 250;

// An unlimited stack is no reason to fill the memory with it.
constexpr std::size_t c_mostSpace = std::size_t{64} * 1024 * 1024;

// The engine's text for the same refusal.
constexpr const char* c_tooDeep = "parentheses are too deeply nested (stack check)";

// The stack that the engine may use; the rest is for signal handlers and the like.
std::size_t UsableSpace()
{
    const std::size_t left = std::min(Base::GetStackSpaceLeft(), c_mostSpace);
    const std::size_t usable = left - left / 8;
    return usable > c_baseSpace ? usable - c_baseSpace : 0;
}

// What one level of matching takes of the stack; these arguments ask the engine for it.
std::size_t AskFrameSize()
{
    const int size = pcre_exec(nullptr, nullptr, nullptr, -999, -999, 0, nullptr, 0);
    return static_cast<std::size_t>(std::max(std::abs(size), 1));
}

unsigned long RecursionLimit()
{
    static const std::size_t frameSize = AskFrameSize();
    return UsableSpace() / frameSize;
}

// Every opening parenthesis counts as a level, which is never too few.
bool IsStackEnoughFor(const char* pattern)
{
    const std::size_t levels = UsableSpace() / c_compileSpacePerLevel;
    if (levels > c_deepestNesting)
        return true;
    std::size_t parentheses = 0;
    for (; *pattern; ++pattern)
        parentheses += *pattern == '(' ? 1 : 0;
    return std::min(parentheses, c_deepestNesting) <= levels;
}

// Whether the engine need not look for faults in the text, byte by byte. Wide steps find that out
// in a fraction of the time.
bool IsAscii(const char* text, std::size_t length)
{
    constexpr std::uint64_t highBits = 0x8080808080808080;
    const char* const end = text + length;
    for (std::uint64_t bits = 0; end - text >= static_cast<std::ptrdiff_t>(sizeof bits);
         text += sizeof bits) {
        std::memcpy(&bits, text, sizeof bits);
        if (bits & highBits)
            return false;
    }
    return std::all_of(text, end, [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

// The engine counts in int and has a code of its own for a negative length.
int LengthForEngine(std::size_t length)
{
    return length <= INT_MAX ? static_cast<int>(length) : -1;
}

} // namespace

void* Compile(const char* pattern, const char*& errorText, int& errorOffset)
{
    if (!IsStackEnoughFor(pattern)) {
        errorText = c_tooDeep;
        errorOffset = 0;
        return nullptr;
    }
    return pcre_compile(pattern, PCRE_UTF8, &errorText, &errorOffset, nullptr);
}

void Free(void* code)
{
    if (code)
        pcre_free(code);
}

int Execute(const void* code, const char* subject, std::size_t length, std::size_t startOffset,
            int options, int* offsets, int offsetCount)
{
    pcre_extra limits{};
    limits.flags = PCRE_EXTRA_MATCH_LIMIT | PCRE_EXTRA_MATCH_LIMIT_RECURSION;
    limits.match_limit = c_matchLimit;
    limits.match_limit_recursion = RecursionLimit();
    if (!(options & c_trusted) && IsAscii(subject, length))
        options |= c_trusted;
    return pcre_exec(static_cast<const pcre*>(code), &limits, subject, LengthForEngine(length),
                     static_cast<int>(startOffset), options, offsets, offsetCount);
}

int GetNameCount(const void* code, int& count)
{
    return pcre_fullinfo(static_cast<const pcre*>(code), nullptr, PCRE_INFO_NAMECOUNT, &count);
}

int GetNameEntrySize(const void* code, int& size)
{
    return pcre_fullinfo(static_cast<const pcre*>(code), nullptr, PCRE_INFO_NAMEENTRYSIZE, &size);
}

int GetNameTable(const void* code, const unsigned char*& table)
{
    return pcre_fullinfo(static_cast<const pcre*>(code), nullptr, PCRE_INFO_NAMETABLE, &table);
}

} // namespace Toolkit::PatternEngine
