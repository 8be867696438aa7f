#include "toolkit/base/FileDescriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Toolkit::Base {

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept
{
    if (this != &other) {
        Close();
        m_descriptor = other.Release();
    }
    return *this;
}

FileDescriptor FileDescriptor::OpenRegular(const std::string& name, int flags, mode_t permissions)
{
    // Without O_NONBLOCK a pipe would block until somebody opens its other end.
    FileDescriptor file(::open(name.c_str(), flags | O_NONBLOCK | O_CLOEXEC, permissions));
    struct stat status {};
    if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    return file;
}

int FileDescriptor::Release()
{
    return std::exchange(m_descriptor, -1);
}

FileDescriptor FileDescriptor::Duplicate() const
{
    return FileDescriptor(::fcntl(m_descriptor, F_DUPFD_CLOEXEC, 0));
}

bool FileDescriptor::Close()
{
    const int descriptor = Release();
    return descriptor < 0 || ::close(descriptor) == 0;
}

bool FileDescriptor::WriteAll(const char* bytes, std::size_t length) const
{
    while (length > 0) {
        const ssize_t written = ::write(m_descriptor, bytes, length);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes += written;
        length -= static_cast<std::size_t>(written);
    }
    return true;
}

} // namespace Toolkit::Base
