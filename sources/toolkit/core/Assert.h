#pragma once

#include "toolkit/core/Export.h"

/// Evaluates its argument and does nothing else, in every build.
TOOLKIT_API void ASSERT(bool condition);
