#pragma once

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/FileLock.h"
#include "toolkit/base/OwnDescriptor.h"

#include <cstddef>
#include <optional>
#include <string>

namespace Toolkit {

/// The file of a `FileLogger`, in a directory where other users may also create files.
///
/// Writes are not buffered: what was written is in the file even if the process is killed.
class LogFile {
public:
    /// Creates or empties the file `path`, given in UTF-8, and makes it readable by its owner only.
    /// The file is locked for this process until it is closed, unless its file system has no locks.
    ///
    /// False if the file cannot be opened, or if it is a symbolic link, not a regular file, the
    /// file of another user, a file with a second hard link, or locked by another process. Its
    /// contents are then unchanged.
    bool Open(const std::string& path);

    /// Whether the last Open() failed because another process had locked the file, or had just
    /// removed it.
    bool IsInUse() const { return m_isInUse; }

    /// Returns the position in bytes at which the next write begins. If the file has been truncated
    /// below the position, moves to its end first: writing farther on would leave a hole.
    long long FindPosition();

    /// Writes at the current position. False if the system does not accept all bytes; some of them
    /// may be in the file.
    bool Write(const char* bytes, std::size_t length);

    /// Moves to the beginning of the file.
    void Rewind();

    void Close();

private:
    bool Lock(const Base::FileDescriptor& file);
    void MoveTo(long long offset, int origin);

    Base::FileDescriptor m_file;
    Base::OwnDescriptor m_ownFile; // keeps a forked child from writing to the file
    std::optional<Base::FileLock> m_lock;
    bool m_isInUse = false;
    long long m_position = 0;
};

} // namespace Toolkit
