#pragma once

#include <string>

namespace Tool {

/// Returns the path of this program, which may contain symbolic links. Empty if the system does not
/// report it.
std::string FindOwnExecutable();

} // namespace Tool
