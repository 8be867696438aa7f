#pragma once

#include <string>

namespace Toolkit::MacStandIns {

/// Sets what _NSGetExecutablePath() returns.
void SetExecutablePath(const std::string& path);

} // namespace Toolkit::MacStandIns
