#pragma once

namespace Tool {

/// Copies what comes from `source` to a file without a name, which goes with its descriptor; the
/// result is that descriptor. Throws a `Failure`.
int SpoolToFile(int source);

} // namespace Tool
