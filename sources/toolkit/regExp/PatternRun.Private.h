#pragma once

#include "toolkit/core/TString.h"
#include "toolkit/regExp/MatchResult.h"
#include "toolkit/regExp/PatternEngine.Private.h"
#include "toolkit/regExp/RegExp.Exceptions.h"

#include <cstddef>
#include <exception>
#include <memory>

namespace Toolkit {

// Steps that the operations with a pattern share. Failures throw a `smart_ptr<RegExpException>`,
// or `std::bad_alloc` when out of memory.

struct PatternCodeRelease {
    void operator()(void* code) const;
};

/// A compiled pattern.
using PatternCode = std::unique_ptr<void, PatternCodeRelease>;

/// Compiles `pattern` up to its first null character.
PatternCode CompilePattern(const TString<char>& pattern);

/// Compiles the result's pattern and replaces its compiled code, which is null after a failure.
void CompilePattern(MatchResult& result);

/// Searches `subject` from `start` on. Returns the number of pairs set in `offsets`, 0 if it has no
/// room for all, and -1 without a match.
int ExecutePattern(const PatternCode& code, const TString<char>& subject, std::size_t start,
                   int options, int (&offsets)[MatchResult::c_ovectorSize]);

/// Searches the result's subject and stores the result code, also if it throws for that code.
void ExecutePattern(MatchResult& result, std::size_t start);

/// Throws the exception for a negative code of the engine's search.
[[noreturn]] void ThrowExecuteError(int code);

/// Calls `operation`. Turns a standard exception, such as `std::bad_alloc`, into the exception with
/// the engine's code for running out of memory.
template <typename Operation>
auto RunReportingExceptions(const Operation& operation)
{
    try {
        return operation();
    } catch (const std::exception&) {
        RegExpException::ThrowOutOfMemory();
    }
}

} // namespace Toolkit
