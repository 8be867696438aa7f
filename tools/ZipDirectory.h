#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace Tool {

/// An entry as the directory of an archive has it. The library removes what makes a name absolute,
/// and does not read the mode.
struct StoredZipEntry {
    std::string name;
    mode_t mode; ///< 0 where the archive was not written under Unix.
};

/// The entries in the directory of an archive. Throws a `Failure` when the file cannot be read.
///
/// Empty for an archive of more than 65535 entries or 4 GiB, whose directory has another form.
std::vector<StoredZipEntry> ReadZipDirectory(const std::string& path);

} // namespace Tool
