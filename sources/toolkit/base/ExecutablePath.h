#pragma once

#include <string>

namespace Toolkit::Base {

/// The full path of the running executable. Empty when the system does not report it, or not in
/// valid UTF-8.
std::wstring GetExecutablePath();

} // namespace Toolkit::Base
