#pragma once

#include <string>

#include "Output.h"
#include "ZipArchive.h"

namespace Tool {

/// Extracts the entries of `archive`, which was opened from `path`, into `directory` and prints
/// their names. Writes at most `limit` bytes in total.
///
/// Throws a `Failure` before writing anything if a name is unsafe, if an entry is neither a file
/// nor a directory, or if the central directory of the archive is damaged. Throws one later if a
/// file exists or cannot be written, if an entry is encrypted, damaged or larger than what is left
/// of `limit`, or after a stop signal.
void ExtractZip(ZipArchive& archive, const std::string& path, const std::string& directory,
                unsigned long long limit, Output& output);

} // namespace Tool
