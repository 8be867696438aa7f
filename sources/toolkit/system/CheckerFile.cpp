#include "toolkit/base/UserAccount.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/system/CheckerFile.Private.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Toolkit {
namespace {

// Describes a write lock on the whole file, for fcntl(2).
struct flock MakeWholeFileLock()
{
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    return range;
}

bool IsLockedElsewhere(const Base::FileDescriptor& file)
{
    struct flock range = MakeWholeFileLock();
    return ::fcntl(file.Get(), F_GETLK, &range) == 0 && range.l_type != F_UNLCK;
}

constexpr mode_t c_ownerOnly = 0600;

// Whether the checker would trust the file: it requires a regular file of this user with mode 0600.
bool IsTrustedByChecker(const Base::FileDescriptor& file)
{
    struct stat status {};
    return ::fstat(file.Get(), &status) == 0 && status.st_uid == ::getuid() &&
           status.st_mode == (S_IFREG | c_ownerOnly);
}

// Returns the process id in the file; 0 if there is none.
pid_t ReadHolder(const Base::FileDescriptor& file)
{
    char text[32] = {};
    const ssize_t length = file.Read(text, sizeof text - 1);
    return length > 0 ? static_cast<pid_t>(std::strtol(text, nullptr, 10)) : 0;
}

} // namespace

CheckerFile::CheckerFile(const TString<wchar_t>& name)
{
    if (name.empty())
        return;
    m_path = Base::EncodeUtf8(Base::GetHomeDirectory()) + "/" + Base::EncodeUtf8(name);
    if (!Create() && RemoveStale())
        Create();
}

// Removes the file, unless another one has taken its place.
CheckerFile::~CheckerFile()
{
    struct stat own {};
    struct stat current {};
    if (m_file.IsOpen() && ::fstat(m_file.Get(), &own) == 0 &&
        ::lstat(m_path.c_str(), &current) == 0 && own.st_dev == current.st_dev &&
        own.st_ino == current.st_ino)
        ::unlink(m_path.c_str());
}

// Locks the file with fcntl(2) and writes the process id and a null character, as the checker does.
// The checker examines the permissions and the process with the id; RemoveStale() of another
// process examines the lock.
bool CheckerFile::Create()
{
    m_file = Base::FileDescriptor::OpenRegular(m_path, O_WRONLY | O_CREAT | O_EXCL, c_ownerOnly);
    if (!m_file.IsOpen())
        return false;
    m_ownFile.Watch(m_file.Get());
    struct flock range = MakeWholeFileLock();
    const std::string holder = std::to_string(::getpid());
    ::fcntl(m_file.Get(), F_SETLK, &range);
    ::fchmod(m_file.Get(), c_ownerOnly);
    m_file.WriteAll(holder.c_str(), holder.size() + 1);
    return true;
}

// Removes the file if its process has ended; sets m_isHeldElsewhere if the process is still
// running. Leaves any file alone that is not a lock file of this user, as the checker does. Returns
// whether the file has been removed.
bool CheckerFile::RemoveStale()
{
    const Base::FileDescriptor file =
        Base::FileDescriptor::OpenRegular(m_path, O_RDWR | O_NOFOLLOW);
    const pid_t holder = file.IsOpen() && IsTrustedByChecker(file) ? ReadHolder(file) : 0;
    if (holder == 0)
        return false;
    m_isHeldElsewhere = IsLockedElsewhere(file);
    // fcntl(2) does not report locks that this process itself holds, so the ids are compared, too.
    return !m_isHeldElsewhere && holder != ::getpid() && ::unlink(m_path.c_str()) == 0;
}

} // namespace Toolkit
