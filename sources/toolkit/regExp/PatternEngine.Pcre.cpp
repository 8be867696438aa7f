#include "toolkit/base/StackSpace.h"
#include "toolkit/regExp/AsciiText.Private.h"
#include "toolkit/regExp/FreshStack.Private.h"
#include "toolkit/regExp/PatternEngine.Private.h"
#include "toolkit/regExp/PatternNesting.Private.h"
#include "toolkit/regExp/SearchLimits.Private.h"

#include <pcre.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <string>

namespace Toolkit::Pcre {
namespace {

static_assert(c_noMatch == PCRE_ERROR_NOMATCH);
static_assert(c_outOfMemory == PCRE_ERROR_NOMEMORY);
static_assert(c_recursionLimit == PCRE_ERROR_RECURSIONLIMIT);
static_assert(c_notAtLineBegin == PCRE_NOTBOL);
static_assert(c_notAtLineEnd == PCRE_NOTEOL);
static_assert(c_notEmpty == PCRE_NOTEMPTY);
static_assert(c_trusted == PCRE_NO_UTF8_CHECK);
static_assert(c_anchored == PCRE_ANCHORED);
static_assert(c_partial == PCRE_PARTIAL_HARD);

// The stack that compiling and matching use before they recurse; measured: 6 KiB.
constexpr std::size_t c_baseSpace = std::size_t{12} * 1024;

// The stack for each further level of parentheses in compiling; measured: 752 bytes.
constexpr std::size_t c_compileSpacePerLevel = 800;

// The engine itself refuses deeper nesting.
constexpr std::size_t c_maxNesting = 250;

// The engine's message for the same refusal. Compile() recognises its own refusal by the address of
// this string.
constexpr const char* c_tooDeep = "parentheses are too deeply nested (stack check)";

// Returns how many bytes of stack the engine may use. Leaves an eighth for signal handlers and the
// like.
std::size_t MeasureUsableSpace()
{
    const std::size_t left = std::min(Base::GetStackSpaceLeft(), c_maxSearchMemory);
    const std::size_t usable = left - left / 8;
    return usable > c_baseSpace ? usable - c_baseSpace : 0;
}

// Returns how many bytes of stack one level of matching uses. For these arguments, pcre_exec()
// returns that size as a negative number.
std::size_t QueryFrameSize()
{
    const int size = pcre_exec(nullptr, nullptr, nullptr, -999, -999, 0, nullptr, 0);
    return static_cast<std::size_t>(std::max(std::abs(size), 1));
}

unsigned long ComputeRecursionLimit()
{
    static const std::size_t frameSize = QueryFrameSize();
    return MeasureUsableSpace() / frameSize;
}

bool IsStackEnoughFor(const char* pattern)
{
    const std::size_t levels = MeasureUsableSpace() / c_compileSpacePerLevel;
    return levels > c_maxNesting || std::min(MeasureNesting(pattern), c_maxNesting) <= levels;
}

// The engine takes the length as an int, and reports an error for a negative one.
int ToEngineLength(std::size_t length)
{
    return length <= INT_MAX ? static_cast<int>(length) : -1;
}

void* CompileOnThisStack(const char* pattern, const char*& errorText, int& errorOffset)
{
    if (!IsStackEnoughFor(pattern)) {
        errorText = c_tooDeep;
        errorOffset = 0;
        return nullptr;
    }
    return pcre_compile(pattern, PCRE_UTF8, &errorText, &errorOffset, nullptr);
}

int ExecuteOnThisStack(const void* code, const char* subject, std::size_t length,
                       std::size_t startOffset, int options, int* offsets, int offsetCount)
{
    pcre_extra limits;
    limits.flags = PCRE_EXTRA_MATCH_LIMIT | PCRE_EXTRA_MATCH_LIMIT_RECURSION;
    limits.match_limit = c_maxSearchSteps;
    limits.match_limit_recursion = ComputeRecursionLimit();
    return pcre_exec(static_cast<const pcre*>(code), &limits, subject, ToEngineLength(length),
                     static_cast<int>(startOffset), options, offsets, offsetCount);
}

} // namespace

void* Compile(const char* pattern, const char*& errorText, int& errorOffset)
{
    void* code = nullptr;
    auto compile = [&] { code = CompileOnThisStack(pattern, errorText, errorOffset); };
    const bool hasStack = HasStackForGroups(pattern);
    // Reported if the fresh stack cannot be created.
    errorText = c_tooDeep;
    errorOffset = 0;
    if (hasStack)
        compile();
    if (!hasStack || (!code && errorText == c_tooDeep && !Base::IsOnThreadStack()))
        RunOnFreshStack(compile);
    return code;
}

void Free(void* code)
{
    if (code)
        pcre_free(code);
}

int Execute(void* code, const char* subject, std::size_t length, std::size_t startOffset,
            int options, int* offsets, int offsetCount)
{
    if (!(options & c_trusted) && IsAscii(subject, length))
        options |= c_trusted;
    int result =
        ExecuteOnThisStack(code, subject, length, startOffset, options, offsets, offsetCount);
    if (result == c_recursionLimit && !Base::IsOnThreadStack()) {
        auto execute = [&] {
            result = ExecuteOnThisStack(code, subject, length, startOffset, options, offsets,
                                        offsetCount);
        };
        RunOnFreshStack(execute);
    }
    return result;
}

std::string GetVersion()
{
    return std::string("PCRE ") + pcre_version();
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

} // namespace Toolkit::Pcre
