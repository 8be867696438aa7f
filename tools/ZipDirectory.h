#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace Tool {

/// An entry as it is stored in the directory of an archive. Needed because the library makes
/// absolute names relative and does not read the mode.
struct StoredZipEntry {
    std::string name;
    mode_t mode; ///< 0 if the archive was not written under Unix.
};

/// Returns the entries in the directory of an archive, ZIP64 included. Throws a `Failure` if the
/// file cannot be read, or its directory does not have as many entries as its end record says.
///
/// Finds the directory where the library finds it, even in a maliciously crafted archive.
std::vector<StoredZipEntry> ReadZipDirectory(const std::string& path);

} // namespace Tool
