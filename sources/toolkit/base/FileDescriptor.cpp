#include "toolkit/base/FileDescriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Toolkit::Base {
namespace {

// Returns the result of a system call, repeating the call if a signal interrupts it.
template <typename Call>
ssize_t RetryAfterSignals(Call call)
{
    ssize_t result = 0;
    do {
        result = call();
    } while (result < 0 && errno == EINTR);
    return result;
}

} // namespace

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept
{
    if (this != &other) {
        Close();
        m_descriptor = other.Release();
    }
    return *this;
}

FileDescriptor FileDescriptor::Open(const std::string& name, int flags, mode_t permissions)
{
    FileDescriptor file(::open(name.c_str(), flags | O_CLOEXEC, permissions));
    // open(2) accepts a directory for reading, but every read fails.
    if (file.IsOpen() && file.HasKind(S_IFDIR))
        file.Close();
    return file;
}

FileDescriptor FileDescriptor::OpenRegular(const std::string& name, int flags, mode_t permissions)
{
    // Without O_NONBLOCK open(2) waits for the other end of a pipe. The flag is cleared afterwards,
    // because duplicates of the descriptor share it.
    FileDescriptor file(::open(name.c_str(), flags | O_NONBLOCK | O_CLOEXEC, permissions));
    if (!file.IsRegular() || ::fcntl(file.Get(), F_SETFL, flags) != 0)
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

bool FileDescriptor::HasKind(mode_t kind) const
{
    struct stat status {};
    return ::fstat(m_descriptor, &status) == 0 && (status.st_mode & S_IFMT) == kind;
}

bool FileDescriptor::IsRegular() const
{
    return HasKind(S_IFREG);
}

long long FileDescriptor::GetLength() const
{
    struct stat status {};
    return ::fstat(m_descriptor, &status) == 0 ? status.st_size : 0;
}

ssize_t FileDescriptor::Read(void* bytes, std::size_t length) const
{
    return RetryAfterSignals([&] { return ::read(m_descriptor, bytes, length); });
}

ssize_t FileDescriptor::ReadAt(long long offset, void* bytes, std::size_t length) const
{
    return RetryAfterSignals([&] { return ::pread(m_descriptor, bytes, length, offset); });
}

bool FileDescriptor::ReadAll(void* bytes, std::size_t length) const
{
    char* next = static_cast<char*>(bytes);
    while (length > 0) {
        const ssize_t count = Read(next, length);
        if (count <= 0)
            return false;
        next += count;
        length -= static_cast<std::size_t>(count);
    }
    return true;
}

bool FileDescriptor::WriteAll(const void* bytes, std::size_t length) const
{
    const char* next = static_cast<const char*>(bytes);
    while (length > 0) {
        const ssize_t count =
            RetryAfterSignals([&] { return ::write(m_descriptor, next, length); });
        if (count <= 0)
            return false;
        next += count;
        length -= static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace Toolkit::Base
