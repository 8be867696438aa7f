#pragma once

#include <string>

#include "Output.h"
#include "ZipArchive.h"

namespace Tool {

/// Extracts the entries of `archive`, which was opened from `path`, into `directory` and prints
/// their names. Writes at most `limit` bytes in total. Throws a `Failure` before writing anything
/// if a name leads outside the directory, or an entry is neither file nor directory; later if a
/// file exists, cannot be written or exceeds the limit.
void ExtractZip(ZipArchive& archive, const std::string& path, const std::string& directory,
                unsigned long long limit, Output& output);

} // namespace Tool
