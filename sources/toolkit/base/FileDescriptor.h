#pragma once

#include <cstddef>
#include <string>
#include <sys/types.h>

namespace Toolkit::Base {

/// A file descriptor, closed with its object. Started programs do not inherit it.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
    ~FileDescriptor() { Close(); }

    FileDescriptor(FileDescriptor&& other) noexcept : m_descriptor(other.Release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;

    /// Opens `name` with the flags of open(2). Like open(2) it may wait: for the other end of a
    /// pipe, or for the release of a lease. Not open after a failure, and for a directory.
    static FileDescriptor Open(const std::string& name, int flags, mode_t permissions = 0666);

    /// Opens `name` when it is a regular file, without waiting for anything. Not open for anything
    /// else.
    static FileDescriptor OpenRegular(const std::string& name, int flags,
                                      mode_t permissions = 0666);

    bool IsOpen() const { return m_descriptor >= 0; }
    int Get() const { return m_descriptor; }
    int Release();

    /// A second descriptor of the same open file, which shares its position and its locks; not open
    /// when the system has none left.
    FileDescriptor Duplicate() const;

    /// False when the system reports an error.
    bool Close();

    bool IsRegular() const;

    /// The length of the file in bytes; 0 for a file without a length, such as a pipe.
    long long GetLength() const;

    /// Reads up to `length` bytes and returns their number: 0 at the end, -1 after an error.
    ssize_t Read(void* bytes, std::size_t length) const;

    /// The same at `offset`, without moving the position.
    ssize_t ReadAt(long long offset, void* bytes, std::size_t length) const;

    /// Reads `length` bytes; false when fewer are left, which `bytes` then begins with.
    bool ReadAll(void* bytes, std::size_t length) const;

    /// Writes `length` bytes; false when the system takes fewer.
    bool WriteAll(const void* bytes, std::size_t length) const;

private:
    bool HasKind(mode_t kind) const;

    int m_descriptor = -1;
};

} // namespace Toolkit::Base
