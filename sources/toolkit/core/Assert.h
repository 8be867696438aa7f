#pragma once

#include "toolkit/core/Export.h"

/// States that `condition` holds. Evaluates its argument and does nothing else in this build.
TOOLKIT_API void ASSERT(bool condition);
