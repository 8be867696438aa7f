#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace Tool {

/// An entry as stored in the central directory of an archive. Needed because the library makes
/// absolute names relative and does not read the mode.
struct StoredZipEntry {
    std::string name;
    mode_t mode; ///< The Unix file type and permissions; 0 if the archive has none.
};

/// Returns the entries in the central directory of an archive, which may be in the ZIP64 format.
/// Throws a `Failure` if the file cannot be read, if it has no valid end record, or if the
/// directory does not have as many entries as the end record says.
///
/// Finds the directory where the library finds it, even in a maliciously crafted archive.
std::vector<StoredZipEntry> ReadZipDirectory(const std::string& path);

} // namespace Tool
