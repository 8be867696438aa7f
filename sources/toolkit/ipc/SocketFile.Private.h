#pragma once

#include "toolkit/base/FileDescriptor.h"

#include <string>
#include <sys/types.h>

namespace Toolkit {

/// A listening socket and its file, which goes with the object: unless another file has taken its
/// place, and not from a child process that holds a copy of the object.
class SocketFile {
public:
    SocketFile() = default;
    ~SocketFile();

    SocketFile(const SocketFile&) = delete;
    SocketFile& operator=(const SocketFile&) = delete;

    /// Makes the file and listens, once. The socket file of this user that nobody listens to any
    /// more is replaced; for anything else in its place the result is false.
    bool Listen(const std::string& path);

    /// Whether the file is still the one that was made.
    bool IsInPlace() const;

    /// False in a child process that got a copy of the object.
    bool IsOfThisProcess() const;

    const Base::FileDescriptor& Socket() const { return m_socket; }

private:
    bool ListenLocked(const std::string& path);
    bool MakeRoom(const std::string& path) const;

    Base::FileDescriptor m_directory;
    std::string m_name; // in m_directory, whatever the working directory becomes
    Base::FileDescriptor m_socket;
    dev_t m_device = 0;
    ino_t m_inode = 0; // 0 while there is no file
    pid_t m_process = 0;
};

} // namespace Toolkit
