#include "toolkit/logging/LogFile.Private.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Toolkit {
namespace {

constexpr mode_t c_ownerOnly = 0600;

// Whether a file found in a public directory can be trusted to be this user's own.
bool IsOwnFile(const Base::FileDescriptor& file)
{
    struct stat status {};
    return ::fstat(file.Get(), &status) == 0 && status.st_uid == ::geteuid() &&
           status.st_nlink == 1;
}

} // namespace

bool LogFile::Open(const std::string& path)
{
    // Nothing is truncated before it has been looked at.
    Base::FileDescriptor file =
        Base::FileDescriptor::OpenRegular(path, O_WRONLY | O_CREAT | O_NOFOLLOW, c_ownerOnly);
    if (!file.IsOpen() || !IsOwnFile(file) || ::fchmod(file.Get(), c_ownerOnly) != 0 ||
        ::ftruncate(file.Get(), 0) != 0)
        return false;
    m_file = std::move(file);
    return true;
}

long long LogFile::GetOffset() const
{
    return ::lseek(m_file.Get(), 0, SEEK_CUR);
}

bool LogFile::Write(const char* bytes, std::size_t length)
{
    return m_file.WriteAll(bytes, length);
}

void LogFile::Rewind()
{
    ::lseek(m_file.Get(), 0, SEEK_SET);
}

void LogFile::Close()
{
    m_file.Close();
}

} // namespace Toolkit
