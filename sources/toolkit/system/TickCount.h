#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

/// Milliseconds since an arbitrary moment, in steps of the system's clock tick (10 ms as a rule).
///
/// Wraps around to 0. Any thread may call it.
TOOLKIT_API unsigned int GetTickCount();

} // namespace Toolkit
