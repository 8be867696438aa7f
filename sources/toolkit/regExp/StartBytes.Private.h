#pragma once

#include "toolkit/regExp/PatternRun.Private.h"

#include <bitset>
#include <cstddef>
#include <string_view>

namespace Toolkit {

/// The bytes that can begin a match: each ASCII byte is tested, all others are assumed to. Requires
/// a pattern for which IgnoresPrecedingText() is true.
class StartBytes {
public:
    /// `options` are the options of the later searches.
    StartBytes(const PatternCode& code, int options);

    /// Returns the first position at or after `start` at which a match can begin; the length of
    /// `text` when there is none.
    std::size_t FindFirst(std::string_view text, std::size_t start) const;

private:
    std::bitset<256> m_bytes;
};

} // namespace Toolkit
