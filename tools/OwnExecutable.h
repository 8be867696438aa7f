#pragma once

#include <string>

namespace Tool {

/// Returns the path of this program; links in it may be unresolved. Empty if the system does not
/// report it.
std::string FindOwnExecutable();

} // namespace Tool
