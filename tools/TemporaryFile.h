#pragma once

namespace Tool {

/// Copies everything from `source` to a file without a name and returns its descriptor; closing
/// that removes the file. Throws a `Failure`.
int SpoolToFile(int source);

} // namespace Tool
