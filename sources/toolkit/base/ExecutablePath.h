#pragma once

#include <string>

namespace Toolkit::Base {

/// Returns the full path of the running executable; empty if the system does not report it, or if
/// it is not valid UTF-8.
std::wstring GetExecutablePath();

} // namespace Toolkit::Base
