#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "InputPath.h"

namespace Tool {

/// What a program does not see in an INI file, or sees otherwise than its author may think.
struct IniFinding {
    std::size_t line; ///< From 1 on.
    std::string text; ///< In visible characters.
};

/// In the order of the lines. Throws a `Failure` when the file cannot be read.
std::vector<IniFinding> CheckIni(const InputPath& path);

} // namespace Tool
