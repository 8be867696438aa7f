#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/regExp/GroupCollection.h"

namespace Toolkit {

/// The input and output of one match: a collection of groups with the raw result.
///
/// It cannot be copied, since it owns the compiled pattern: share it as a `smart_ptr`. One object
/// is used by one thread at a time.
class TOOLKIT_API MatchResult : public GroupCollection {
public:
    /// The number of elements of `ovector`: enough for the whole match and 19 groups.
    static constexpr int c_ovectorSize = 60;

    MatchResult();
    ~MatchResult();

    MatchResult(const MatchResult&) = delete;
    MatchResult& operator=(const MatchResult&) = delete;

    /// Whether the pattern compiled and matched. Call it after a search.
    ///
    /// Also true if a group after group 19 took part in the match; no groups are reported then.
    bool Success();

    const char* errorText; ///< Why the pattern did not compile; null if it did. Not owned.
    int errorOffset;       ///< Byte offset of that error in the pattern; the engines may differ.
    void* code;            ///< The compiled pattern, owned; null if there is none.
    TString<char> subject; ///< The string that is searched, in UTF-8.
    TString<char> pattern; ///< The pattern in UTF-8, used up to its first null character.
    int execOptions;       ///< PCRE 1's option bits, passed to every search.
    int resultCode;        ///< Number of pairs; 0: too many, -1: no match, below: an error.
    int ovectorSize;       ///< Always 60.

    /// The begin and end of group i in bytes are elements 2 * i and 2 * i + 1; -1 if the group took
    /// no part. The last third is reserved for the engine.
    int ovector[c_ovectorSize];
};

} // namespace Toolkit
