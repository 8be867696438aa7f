#pragma once

#include <cstddef>
#include <string>
#include <sys/types.h>

namespace Toolkit::Base {

/// A file descriptor, closed in the destructor. Programs that the process starts do not inherit the
/// descriptors that this class opens or duplicates.
class FileDescriptor {
public:
    FileDescriptor() = default;
    /// Takes ownership of `descriptor`; a negative number means not open.
    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
    ~FileDescriptor() { Close(); }

    FileDescriptor(FileDescriptor&& other) noexcept : m_descriptor(other.Release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;

    /// Opens `name` with the flags of open(2). Like open(2), may wait for the other end of a pipe
    /// or for the release of a lease, and may fail if a signal interrupts the wait. On failure, and
    /// for a directory, the result is not open.
    static FileDescriptor Open(const std::string& name, int flags, mode_t permissions = 0666);

    /// Opens `name` if it is a regular file. Fails instead of waiting. On failure, and for any
    /// other kind of file, the result is not open.
    static FileDescriptor OpenRegular(const std::string& name, int flags,
                                      mode_t permissions = 0666);

    bool IsOpen() const { return m_descriptor >= 0; }
    int Get() const { return m_descriptor; }

    /// Returns the descriptor, which the caller must close from now on; -1 if it is not open.
    int Release();

    /// Returns a second descriptor for the same open file. Both share its position and its locks.
    /// The result is not open if this object is not, or if the process has no descriptor left.
    FileDescriptor Duplicate() const;

    /// Closes the descriptor, if it is open. Returns false if the system reports an error; the
    /// object is then not open either.
    bool Close();

    bool IsRegular() const;

    /// Returns the length of the file in bytes; 0 for a file without a length, such as a pipe, and
    /// after an error.
    long long GetLength() const;

    /// Reads up to `length` bytes and returns their number: 0 at the end of the file, -1 after an
    /// error.
    ssize_t Read(void* bytes, std::size_t length) const;

    /// Like Read(), but at `offset`, and without moving the position.
    ssize_t ReadAt(long long offset, void* bytes, std::size_t length) const;

    /// Reads `length` bytes. Returns false at an early end of the file and after an error; `bytes`
    /// then begins with what was read.
    bool ReadAll(void* bytes, std::size_t length) const;

    /// Writes `length` bytes; returns false if the system accepts fewer.
    bool WriteAll(const void* bytes, std::size_t length) const;

private:
    bool HasKind(mode_t kind) const;

    int m_descriptor = -1;
};

} // namespace Toolkit::Base
