#pragma once

#include <cstdio>
#include <string>
#include <sys/types.h>

namespace Toolkit::Base {

/// An open file of the system, closed with its object. Programs that are started do not inherit it.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
    ~FileDescriptor() { Close(); }

    FileDescriptor(FileDescriptor&& other) noexcept : m_descriptor(other.Release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;

    /// Opens the regular file `name` with the flags of open(2); nothing when it is anything else, a
    /// pipe without a writer included.
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

    /// Writes all of `length` bytes; false when the system takes no more.
    bool WriteAll(const char* bytes, std::size_t length) const;

private:
    int m_descriptor = -1;
};

} // namespace Toolkit::Base
