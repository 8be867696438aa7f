#pragma once

#include "toolkit/base/FileDescriptor.h"

#include <string>

namespace Toolkit::Base {

/// Replaces the contents of a file completely or not at all.
///
/// Writes to a temporary file in the same directory, and removes it in the destructor unless
/// `Commit()` was called. The file keeps its permissions; a new file gets those that the umask
/// allows. A symbolic link keeps pointing to the file. Only regular files are replaced.
class FileReplacement {
public:
    explicit FileReplacement(const std::string& path);
    ~FileReplacement();

    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    bool Write(const char* bytes, std::size_t length);

    /// Replaces the old contents; false if any step failed.
    bool Commit();

private:
    void CreateTemporary();
    void CreateTemporaryAnew();

    std::string m_target;
    std::string m_temporary; // empty when there is no temporary file
    FileDescriptor m_file;
};

} // namespace Toolkit::Base
