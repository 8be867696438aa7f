#pragma once

#include "toolkit/regExp/MatchResult.h"

#include <algorithm>
#include <cstddef>

namespace Toolkit {

// The groups found by the last search of a match result.

/// A range of bytes in the subject.
struct GroupRange {
    int begin;
    int end;

    /// False for a group that took no part in the match or does not exist.
    bool IsValid() const { return begin >= 0; }

    /// In bytes; 0 if \K has moved the beginning past the end.
    std::size_t Length() const { return static_cast<std::size_t>(std::max(end - begin, 0)); }
};

/// Returns the range of group `number`; invalid when there is no such group.
GroupRange GetGroupRange(const MatchResult& result, int number);

/// Adds the groups that the search found, and their names, to the result.
///
/// Throws a `smart_ptr<RegExpException>` if the engine cannot report the names, and
/// `std::bad_alloc` when out of memory.
void ReadGroups(MatchResult& result);

} // namespace Toolkit
