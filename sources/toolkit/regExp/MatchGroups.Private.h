#pragma once

#include "toolkit/regExp/MatchResult.h"

#include <algorithm>
#include <cstddef>

namespace Toolkit {

// The groups that the last search of a match result found.

/// A range of bytes in the subject.
struct GroupRange {
    int begin;
    int end;

    /// False for a group that took no part.
    bool IsValid() const { return begin >= 0; }

    /// 0 where \K has moved the start past the end.
    std::size_t Length() const { return static_cast<std::size_t>(std::max(end - begin, 0)); }
};

/// The range of group `number`; invalid when there is no such group.
GroupRange GetGroupRange(const MatchResult& result, int number);

/// Adds the groups with their names to the result; none when the search reports none.
///
/// Throws a `smart_ptr<RegExpException>` when the engine cannot report the names.
void ReadGroups(MatchResult& result);

} // namespace Toolkit
