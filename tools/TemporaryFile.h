#pragma once

namespace Tool {

/// Copies everything from `source` to a new file without a name and returns its descriptor, which
/// the caller closes. Throws a `Failure` if it cannot.
int SpoolToFile(int source);

} // namespace Tool
