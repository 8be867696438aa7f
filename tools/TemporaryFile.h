#pragma once

#include "Descriptor.h"

namespace Tool {

/// Copies everything from `source` to a new unnamed file and returns that file. Throws
/// a `Failure` if that fails. Does not close `source`.
Descriptor SpoolToFile(int source);

} // namespace Tool
