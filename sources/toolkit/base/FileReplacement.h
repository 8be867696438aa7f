#pragma once

#include "toolkit/base/FileDescriptor.h"

#include <string>

namespace Toolkit::Base {

/// New contents for a file, which take its place as a whole or not at all.
///
/// They are written to a temporary file in the same directory, which goes with the object unless it
/// was committed. Permissions stay, a new file gets those that the umask leaves, and a symbolic
/// link keeps pointing to the file. Only a regular file is replaced.
class FileReplacement {
public:
    explicit FileReplacement(const std::string& path);
    ~FileReplacement();

    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    bool Write(const char* bytes, std::size_t length);

    /// Puts the new contents in the place of the old ones; false when anything failed.
    bool Commit();

private:
    void CreateTemporary();
    void CreateTemporaryAnew();

    std::string m_target;
    std::string m_temporary; // empty when there is no temporary file
    FileDescriptor m_file;
};

} // namespace Toolkit::Base
