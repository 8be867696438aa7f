#pragma once

#include <string>

namespace Toolkit::Base {

/// Returns the full path of the running executable; empty if the system does not report it, or if
/// it is not valid UTF-8. On Linux, " (deleted)" follows the path of an executable that was deleted
/// or replaced. Throws `std::bad_alloc`.
std::wstring GetExecutablePath();

} // namespace Toolkit::Base
