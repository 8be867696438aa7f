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

/// The entries in the directory of an archive, ZIP64 included. Throws a `Failure` when the file
/// cannot be read, or has no directory of as many entries as its end says.
///
/// Finds the directory where the library finds it, even in an archive that is made to mislead.
std::vector<StoredZipEntry> ReadZipDirectory(const std::string& path);

} // namespace Tool
