#pragma once

#include <string>

#include "Output.h"
#include "ZipArchive.h"

namespace Tool {

/// Extracts the entries of `archive` into `directory` and prints their names. At most `limit` bytes
/// are written in total. Throws a `Failure` before anything is written when a name leads outside
/// the directory, or an entry is neither file nor directory.
void ExtractZip(ZipArchive& archive, const std::string& path, const std::string& directory,
                unsigned long long limit, Output& output);

} // namespace Tool
