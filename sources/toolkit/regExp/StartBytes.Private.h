#pragma once

#include "toolkit/regExp/PatternRun.Private.h"

#include <bitset>
#include <cstddef>
#include <string_view>

namespace Toolkit {

/// The bytes that a match of a pattern can begin with, found by trying each of them. Only for a
/// pattern that looks ahead only.
class StartBytes {
public:
    /// `options` are those of the searches.
    StartBytes(const PatternCode& code, int options);

    /// The first place from `start` on at which a match can begin; the end of the text when there
    /// is none.
    std::size_t FindFirst(std::string_view text, std::size_t start) const;

private:
    std::bitset<256> m_bytes;
};

} // namespace Toolkit
