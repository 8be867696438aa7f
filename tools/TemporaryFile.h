#pragma once

#include "Descriptor.h"

namespace Tool {

/// Copies everything from `source` to a new unnamed file and returns that file. Throws
/// a `Failure` if that fails. `source` stays the caller's.
Descriptor SpoolToFile(int source);

} // namespace Tool
