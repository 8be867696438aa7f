#pragma once

#include "toolkit/regExp/PatternRun.Private.h"

#include <bitset>
#include <cstddef>
#include <string_view>

namespace Toolkit {

/// The bytes that a match of a pattern can begin with, found by trying each ASCII byte. Only for a
/// pattern for which IgnoresPrecedingText() is true.
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
