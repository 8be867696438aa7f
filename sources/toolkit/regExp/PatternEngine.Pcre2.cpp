#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/StackSpace.h"
#include "toolkit/regExp/AsciiText.Private.h"
#include "toolkit/regExp/FreshStack.Private.h"
#include "toolkit/regExp/PatternEngine.Private.h"
#include "toolkit/regExp/PatternNesting.Private.h"
#include "toolkit/regExp/Pcre2Errors.Private.h"
#include "toolkit/regExp/Pcre2Pattern.Private.h"
#include "toolkit/regExp/Pcre2Syntax.Private.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>

namespace Toolkit::Pcre {
namespace {

// PCRE 1's error codes for invalid arguments and subjects of a search.
constexpr int c_badOption = -3;
constexpr int c_nullArgument = -2;
constexpr int c_badUtf8Offset = -11;
constexpr int c_badCount = -15;
constexpr int c_badNewline = -23;
constexpr int c_badOffset = -24;
constexpr int c_shortUtf8 = -25;
constexpr int c_badLength = -32;

// UTF-8 faults 1 to 5 are characters that the end of the subject cuts off.
constexpr int c_lastTruncationFault = 5;

struct OptionPair {
    int pcre;
    std::uint32_t pcre2;
};

// The options of pcre_exec() and their counterparts in pcre2_match().
constexpr OptionPair c_options[] = {
    {c_anchored, PCRE2_ANCHORED},    {c_notAtLineBegin, PCRE2_NOTBOL},
    {c_notAtLineEnd, PCRE2_NOTEOL},  {c_notEmpty, PCRE2_NOTEMPTY},
    {c_trusted, PCRE2_NO_UTF_CHECK}, {0x00008000, PCRE2_PARTIAL_SOFT},
    {c_partial, PCRE2_PARTIAL_HARD}, {0x10000000, PCRE2_NOTEMPTY_ATSTART}};

std::uint32_t TranslateOptions(int options)
{
    std::uint32_t translated = 0;
    for (const OptionPair& option : c_options)
        translated |= options & option.pcre ? option.pcre2 : 0;
    return translated;
}

bool AreKnown(int options)
{
    int known = c_settingOptions;
    for (const OptionPair& option : c_options)
        known |= option.pcre;
    return (options & ~known) == 0;
}

bool IsContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

int ToOffset(std::size_t offset)
{
    return offset == PCRE2_UNSET ? -1 : static_cast<int>(offset);
}

/// One search, with the arguments of Execute().
struct Search {
    const char* subject;
    std::size_t length;
    std::size_t start;
    int options;
    int* offsets;
    int pairCount;

    int Run(Pcre2Pattern& pattern) const;

    /// Returns a negative code if the subject is not valid UTF-8, if the search starts inside a
    /// character, and when out of memory, otherwise 0.
    int CheckSubject(Pcre2Pattern& pattern) const;

private:
    int Finish(const Pcre2Pattern& pattern, int result) const;
    int ReportInvalidUtf8(const Pcre2Pattern& pattern, int error) const;
};

int Search::Run(Pcre2Pattern& pattern) const
{
    // In a search from the beginning, the engine itself checks the whole subject.
    if (start == 0)
        return Finish(pattern, pattern.Match(subject, length, 0, TranslateOptions(options)));
    const int fault = CheckSubject(pattern);
    if (fault < 0)
        return fault;
    const std::uint32_t trusting = TranslateOptions(options | c_trusted);
    return Finish(pattern, pattern.Match(subject, length, start, trusting));
}

// PCRE 1 checks the whole subject, PCRE 2 only what the search may reach.
int Search::CheckSubject(Pcre2Pattern& pattern) const
{
    if (options & c_trusted)
        return 0;
    const int result = pattern.CheckUtf8(subject, length, TranslateOptions(options));
    if (IsInvalidUtf8Error(result))
        return ReportInvalidUtf8(pattern, result);
    // When out of memory, the engine has checked nothing.
    if (result == PCRE2_ERROR_NOMEMORY)
        return ToPcreError(result);
    const bool isInside = start > 0 && start < length && IsContinuation(subject[start]);
    return isInside ? c_badUtf8Offset : 0;
}

int Search::Finish(const Pcre2Pattern& pattern, int result) const
{
    if (IsInvalidUtf8Error(result))
        return ReportInvalidUtf8(pattern, result);
    if (result < 0)
        return ToPcreError(result);
    // The match data can hold more pairs than `offsets`.
    const int count = result > pairCount ? 0 : result;
    // 0 means that all pairs are set and more are needed.
    const int setPairs = count > 0 ? count : pairCount;
    const std::size_t* const pairs = pattern.Offsets();
    std::transform(pairs, pairs + 2 * setPairs, offsets, ToOffset);
    std::fill(offsets + 2 * setPairs, offsets + 2 * pairCount, -1);
    return count;
}

int Search::ReportInvalidUtf8(const Pcre2Pattern& pattern, int error) const
{
    const int fault = ToUtf8Fault(error);
    if (pairCount > 0) {
        offsets[0] = static_cast<int>(pattern.FaultOffset());
        offsets[1] = fault;
    }
    const bool isShort = fault <= c_lastTruncationFault && (options & c_partial);
    return isShort ? c_shortUtf8 : ToPcreError(error);
}

// Compiles the pattern again, because PCRE 2 accepts settings such as the newline only then.
int RunWithSettings(Pcre2Pattern& pattern, const Search& search)
{
    if (!AreNewlinesKnown(search.options)) {
        // PCRE 1 reports an invalid subject before an invalid newline.
        const int fault = search.CheckSubject(pattern);
        return fault < 0 ? fault : c_badNewline;
    }
    Pcre2Pattern other(AddPatternSettings(pattern.Text(), search.options));
    // The pattern compiled before, so only memory or stack can be lacking.
    return other.Compile() == 0 ? search.Run(other) : c_outOfMemory;
}

const pcre2_code* ToCode(const void* code)
{
    return static_cast<const Pcre2Pattern*>(code)->Code();
}

int GetInformation(const void* code, std::uint32_t what, int& value)
{
    std::uint32_t number = 0;
    if (!code || pcre2_pattern_info(ToCode(code), what, &number) < 0)
        return c_nullArgument;
    value = static_cast<int>(number);
    return 0;
}

} // namespace

void* Compile(const char* pattern, const char*& errorText, int& errorOffset)
{
    auto compiled = std::make_unique<Pcre2Pattern>(pattern);
    const bool hasStack = HasStackForGroups(pattern);
    int error = hasStack ? compiled->Compile() : PCRE2_ERROR_PARENTHESES_STACK_CHECK;
    const bool isTooDeep = error == PCRE2_ERROR_PARENTHESES_STACK_CHECK;
    if (!hasStack || (isTooDeep && !Base::IsOnThreadStack())) {
        auto compile = [&] { error = compiled->Compile(); };
        // If it throws, the error above is reported.
        auto tryToCompile = [&] { static_cast<void>(Base::RunsWithoutThrowing(compile)); };
        RunOnFreshStack(tryToCompile);
    }
    if (compiled->IsCompiled()) {
        errorText = nullptr;
        errorOffset = 0;
        return compiled.release();
    }
    errorText = GetCompileErrorMessage(error);
    errorOffset = compiled->ErrorOffset();
    return nullptr;
}

void Free(void* code)
{
    delete static_cast<Pcre2Pattern*>(code);
}

int Execute(void* code, const char* subject, std::size_t length, std::size_t startOffset,
            int options, int* offsets, int offsetCount)
{
    if (!AreKnown(options))
        return c_badOption;
    if (!code)
        return c_nullArgument;
    if (offsetCount < 0)
        return c_badCount;
    if (length > INT_MAX)
        return c_badLength;
    if (startOffset > length)
        return c_badOffset;
    if (!(options & c_trusted) && IsAscii(subject, length))
        options |= c_trusted;

    auto& pattern = *static_cast<Pcre2Pattern*>(code);
    const int pairCount = std::min(offsetCount / 3, Pcre2Pattern::c_pairCount);
    const Search search{subject, length, startOffset, options, offsets, pairCount};
    return options & c_settingOptions ? RunWithSettings(pattern, search) : search.Run(pattern);
}

std::string GetVersion()
{
    char text[64] = {}; // pcre2api(3) requires 24
    pcre2_config(PCRE2_CONFIG_VERSION, text);
    return std::string("PCRE2 ") + text;
}

int GetNameCount(const void* code, int& count)
{
    return GetInformation(code, PCRE2_INFO_NAMECOUNT, count);
}

int GetNameEntrySize(const void* code, int& size)
{
    return GetInformation(code, PCRE2_INFO_NAMEENTRYSIZE, size);
}

int GetNameTable(const void* code, const unsigned char*& table)
{
    return code ? pcre2_pattern_info(ToCode(code), PCRE2_INFO_NAMETABLE, &table) : c_nullArgument;
}

} // namespace Toolkit::Pcre
