#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "InputPath.h"

namespace Tool {

/// Something in an INI file that a program ignores, or may read differently from what the author
/// expects.
struct IniFinding {
    std::size_t line; ///< Counted from 1.
    std::string text; ///< Safe to print: names are escaped.
};

/// Returns the findings in the order of their lines. Throws a `Failure` if the file cannot be read.
std::vector<IniFinding> CheckIni(const InputPath& path);

} // namespace Tool
