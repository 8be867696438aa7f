#pragma once

#include "toolkit/base/FileDescriptor.h"

#include <cstddef>
#include <string>

namespace Toolkit::Base {

/// Replaces the contents of a file completely or not at all.
///
/// Writes to a temporary file in the same directory, which the destructor removes unless Commit()
/// succeeded. The file keeps its permissions, but not its owner or other hard links; a new file
/// gets the permissions that the umask allows. Even a read-only file is replaced: only the
/// directory must be writable. If the path is a symbolic link, the link stays, and the file that it
/// points to is replaced. Anything but a regular file is left alone: Write() and Commit() then
/// return false. The same applies to a file name of more than 248 bytes, because the temporary name
/// is seven bytes longer.
class FileReplacement {
public:
    /// Creates the temporary file. A failure shows in the result of Write() and Commit(). Throws
    /// `std::bad_alloc`.
    explicit FileReplacement(const std::string& path);
    ~FileReplacement();

    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    /// Appends to the temporary file. Returns false if any byte could not be written; do not call
    /// Commit() then.
    bool Write(const char* bytes, std::size_t length);

    /// Replaces the file with the temporary file, whose contents are flushed to disk first. Returns
    /// false, with the file unchanged, if that fails. The directory is not flushed: a power failure
    /// may bring the old contents back.
    bool Commit();

private:
    void CreateTemporary();
    void RecreateTemporary();

    std::string m_target;
    std::string m_temporary; // empty when there is no temporary file
    FileDescriptor m_file;
};

} // namespace Toolkit::Base
