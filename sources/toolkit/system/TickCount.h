#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

/// Returns the milliseconds since an arbitrary moment, in steps of the system's clock tick (usually
/// 10 ms).
///
/// The count wraps around at 2^32 milliseconds, about 50 days. Any thread may call it.
TOOLKIT_API unsigned int GetTickCount();

} // namespace Toolkit
