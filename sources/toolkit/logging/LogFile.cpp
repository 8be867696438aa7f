#include "toolkit/logging/LogFile.Private.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Toolkit {
namespace {

constexpr mode_t c_ownerOnly = 0600;

// Whether a file found in a public directory belongs to this user and has no other name.
bool IsOwnFile(const Base::FileDescriptor& file)
{
    struct stat status {};
    return ::fstat(file.Get(), &status) == 0 && status.st_uid == ::geteuid() &&
           status.st_nlink == 1;
}

} // namespace

bool LogFile::Open(const std::string& path)
{
    m_isInUse = false;
    // Without O_TRUNC: a file is checked and locked before it is truncated.
    Base::FileDescriptor file =
        Base::FileDescriptor::OpenRegular(path, O_WRONLY | O_CREAT | O_NOFOLLOW, c_ownerOnly);
    if (!file.IsOpen() || !IsOwnFile(file) || !Lock(file))
        return false;
    if (::fchmod(file.Get(), c_ownerOnly) != 0 || ::ftruncate(file.Get(), 0) != 0) {
        m_lock.reset();
        return false;
    }
    m_ownFile.Forget();
    m_file = std::move(file);
    m_ownFile.Watch(m_file.Get());
    m_position = 0;
    return true;
}

// Also returns true on a file system without locks: the log is then written without one.
bool LogFile::Lock(const Base::FileDescriptor& file)
{
    m_lock.emplace(file.Duplicate());
    m_isInUse = m_lock->GetState() == Base::FileLock::State::HeldElsewhere;
    // The process that held the lock may have removed the file before it released the lock. The
    // next attempt then creates a new file.
    if (!m_isInUse && IsOwnFile(file))
        return true;
    m_isInUse = true;
    m_lock.reset();
    return false;
}

long long LogFile::FindPosition()
{
    struct stat status {};
    if (::fstat(m_file.Get(), &status) == 0 && status.st_size < m_position)
        MoveTo(0, SEEK_END);
    return m_position;
}

bool LogFile::Write(const char* bytes, std::size_t length)
{
    if (!m_file.WriteAll(bytes, length)) {
        MoveTo(0, SEEK_CUR);
        return false;
    }
    m_position += static_cast<long long>(length);
    return true;
}

void LogFile::Rewind()
{
    MoveTo(0, SEEK_SET);
}

void LogFile::MoveTo(long long offset, int origin)
{
    m_position = ::lseek(m_file.Get(), offset, origin);
}

void LogFile::Close()
{
    m_lock.reset();
    m_ownFile.Forget();
    m_file.Close();
}

} // namespace Toolkit
