#include "toolkit/base/StackSpace.h"
#include "toolkit/regExp/AtomicRecursion.Private.h"
#include "toolkit/regExp/Pcre2Pattern.Private.h"
#include "toolkit/regExp/Pcre2Syntax.Private.h"
#include "toolkit/regExp/SearchLimits.Private.h"

#include <algorithm>
#include <utility>

namespace Toolkit {
namespace {

// The stack that compiling uses before it recurses; measured: 26 KiB.
constexpr std::size_t c_baseSpace = std::size_t{30} * 1024;

// The stack for each further level of parentheses; measured: 640 bytes.
constexpr std::size_t c_spacePerLevel = 720;

// The engine itself refuses deeper nesting.
constexpr std::uint32_t c_maxNesting = 250;

// Maximum number of levels on a stack whose bounds are unknown. By the measurements above, they fit
// into the 32 KiB that GetStackSpaceLeft() assumes.
constexpr std::uint32_t c_maxLevelsOnUnknownStack = 6;

// The engine's own limit is 20 GB.
constexpr std::uint32_t c_heapLimitKiB = c_maxSearchMemory / 1024;

struct ContextRelease {
    void operator()(pcre2_compile_context* context) const { pcre2_compile_context_free(context); }
};
using CompileContext = std::unique_ptr<pcre2_compile_context, ContextRelease>;

PCRE2_SPTR ToUnits(const char* text)
{
    return reinterpret_cast<PCRE2_SPTR>(text);
}

// Returns how many levels of parentheses fit into the stack space left; -1 when even a pattern
// without parentheses does not fit.
int CountLevelsThatFit()
{
    if (!Base::IsOnThreadStack())
        return c_maxLevelsOnUnknownStack;
    const std::size_t left = Base::GetStackSpaceLeft();
    // An eighth is left for signal handlers and the like.
    const std::size_t usable = left - left / 8;
    if (usable < c_baseSpace)
        return -1;
    const std::size_t levels = (usable - c_baseSpace) / c_spacePerLevel;
    return static_cast<int>(std::min<std::size_t>(levels, c_maxNesting));
}

// The engine calls it before each level; any result but 0 ends the compilation.
int RefuseDeeperThan(std::uint32_t depth, void* levels)
{
    return depth > *static_cast<std::uint32_t*>(levels) ? 1 : 0;
}

// Whether the engine was built with other defaults for newlines and line breaks than LF and
// Unicode.
bool HasOtherDefaults()
{
    std::uint32_t newline = 0;
    std::uint32_t lineBreaks = 0;
    pcre2_config(PCRE2_CONFIG_NEWLINE, &newline);
    pcre2_config(PCRE2_CONFIG_BSR, &lineBreaks);
    return newline != PCRE2_NEWLINE_LF || lineBreaks != PCRE2_BSR_UNICODE;
}

// Since 10.38 the engine refuses \K in look-arounds unless it is told otherwise.
void AllowMatchBeginInLookArounds([[maybe_unused]] pcre2_compile_context* context)
{
#ifdef PCRE2_EXTRA_ALLOW_LOOKAROUND_BSK
    pcre2_set_compile_extra_options(context, PCRE2_EXTRA_ALLOW_LOOKAROUND_BSK);
#endif
}

// Whether compiling needs settings other than the engine's defaults. Most patterns do not.
bool NeedsContext(const std::string& pattern, std::uint32_t levels)
{
    return levels < c_maxNesting || HasOtherDefaults() || pattern.find("\\K") != std::string::npos;
}

// Returns null when out of memory.
CompileContext CreateContext(std::uint32_t& levels)
{
    CompileContext context(pcre2_compile_context_create(nullptr));
    if (!context)
        return context;
    pcre2_set_newline(context.get(), PCRE2_NEWLINE_LF);
    pcre2_set_bsr(context.get(), PCRE2_BSR_UNICODE);
    pcre2_set_compile_recursion_guard(context.get(), RefuseDeeperThan, &levels);
    AllowMatchBeginInLookArounds(context.get());
    return context;
}

Pcre2Pattern::CodeOwner CompileText(const std::string& pattern, int& error, int& errorOffset,
                                    pcre2_compile_context* context)
{
    std::size_t offset = 0;
    Pcre2Pattern::CodeOwner code(pcre2_compile(ToUnits(pattern.c_str()), pattern.size(), PCRE2_UTF,
                                               &error, &offset, context));
    errorOffset = static_cast<int>(offset);
    return code;
}

} // namespace

Pcre2Pattern::Pcre2Pattern(const std::string& pattern) : m_pattern(TranslateToPcre2(pattern)) {}

int Pcre2Pattern::Compile()
{
    const int levelsThatFit = CountLevelsThatFit();
    if (levelsThatFit < 0)
        return PCRE2_ERROR_PARENTHESES_STACK_CHECK;
    auto levels = static_cast<std::uint32_t>(levelsThatFit);
    CompileContext context;
    if (NeedsContext(m_pattern, levels)) {
        context = CreateContext(levels);
        if (!context)
            return PCRE2_ERROR_HEAP_FAILED;
    }
    int error = 0;
    CodeOwner code = CompileText(m_pattern, error, m_errorOffset, context.get());
    if (!code)
        return error;
    if (MayRecurse(m_pattern)) {
        // If the rewritten pattern does not compile, the code of the original stays.
        int ignored = 0;
        const std::string atomic = MakeRecursionAtomic(m_pattern);
        if (CodeOwner rewritten = CompileText(atomic, error, ignored, context.get()))
            code = std::move(rewritten);
    }
    // Set last, because the rewriting may throw, and the pattern then counts as not compiled.
    m_code = std::move(code);
    return 0;
}

int Pcre2Pattern::Match(const char* subject, std::size_t length, std::size_t start,
                        std::uint32_t options)
{
    if (!PrepareMatch())
        return PCRE2_ERROR_NOMEMORY;
    return pcre2_match(m_code.get(), ToUnits(subject), length, start, options, m_matchData.get(),
                       m_limits.get());
}

int Pcre2Pattern::CheckUtf8(const char* subject, std::size_t length, std::uint32_t options)
{
    if (!PrepareMatch())
        return PCRE2_ERROR_NOMEMORY;
    // The engine checks the subject first. The limit then ends the search at its first step.
    pcre2_set_match_limit(m_limits.get(), 0);
    const int result = Match(subject, length, 0, options);
    pcre2_set_match_limit(m_limits.get(), c_maxSearchSteps);
    return result;
}

bool Pcre2Pattern::PrepareMatch()
{
    if (m_matchData && m_limits)
        return true;
    m_matchData.reset(pcre2_match_data_create(c_pairCount, nullptr));
    m_limits.reset(pcre2_match_context_create(nullptr));
    if (!m_matchData || !m_limits)
        return false;
    pcre2_set_match_limit(m_limits.get(), c_maxSearchSteps);
    pcre2_set_heap_limit(m_limits.get(), c_heapLimitKiB);
    return true;
}

} // namespace Toolkit
