#pragma once

#include <string>

namespace Tool {

/// The path of this program; links in it may be unresolved. Empty when the system does not report
/// it.
std::string FindOwnExecutable();

} // namespace Tool
