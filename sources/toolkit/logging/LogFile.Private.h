#pragma once

#include "toolkit/base/FileDescriptor.h"

#include <cstddef>
#include <string>

namespace Toolkit {

/// The file of a `FileLogger`, in a directory that other users write to.
///
/// Nothing is buffered: what was written is in the file when the process is killed.
class LogFile {
public:
    /// Creates or empties the file `path`, given in UTF-8, and makes it readable by its owner only.
    /// False when it is not a regular file of this user under a single name; a symbolic link is
    /// never followed.
    bool Open(const std::string& path);

    /// The position in bytes at which the next write begins.
    long long GetOffset() const;

    /// False when the system takes no more; part of the bytes may be in the file then.
    bool Write(const char* bytes, std::size_t length);

    /// Moves to the beginning of the file.
    void Rewind();

    void Close();

private:
    Base::FileDescriptor m_file;
};

} // namespace Toolkit
