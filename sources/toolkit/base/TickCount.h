#pragma once

namespace Toolkit::Base {

/// Milliseconds since an arbitrary moment, as the public `GetTickCount()` returns them.
unsigned int GetTickCount();

} // namespace Toolkit::Base
