#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// One captured group of a match. When out of memory, constructing and copying it throw
/// `std::bad_alloc`.
class TOOLKIT_API Group {
public:
    /// Constructs group `number` without a name, with the value `text`.
    Group(const TString<char>& text, unsigned short number);

    TString<char> name;   ///< Empty unless the pattern names the group.
    TString<char> value;  ///< UTF-8; empty for a group that took no part in the match.
    unsigned short index; ///< 0 for the whole match, 1 for the first parenthesised group.
};

} // namespace Toolkit
