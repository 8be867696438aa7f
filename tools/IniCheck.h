#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "InputPath.h"

namespace Tool {

/// Something in an INI file that a program ignores, or reads differently than its author may
/// expect.
struct IniFinding {
    std::size_t line; ///< From 1 on.
    std::string text; ///< In visible characters.
};

/// In the order of the lines. Throws a `Failure` when the file cannot be read.
std::vector<IniFinding> CheckIni(const InputPath& path);

} // namespace Tool
