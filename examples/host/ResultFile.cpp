#include "ResultFile.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <system_error>
#include <toolkit/encoding/UTF8.h>
#include <unistd.h>

using namespace Toolkit;

namespace {

constexpr mode_t c_permissions = S_IRWXU | S_IRWXG | S_IRWXO;

// Runs before main(), while the process has only one thread: reading the umask means changing it.
mode_t ReadUmask()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return mask;
}

const mode_t c_umask = ReadUmask();

// Gives a replacement the group and the permissions of the old file. If the group cannot be set,
// the replacement has no group permissions. If there is no old file, sets 0666 without the bits of
// the umask.
bool AdoptPermissions(int descriptor, const struct stat& replaced)
{
    if (replaced.st_nlink == 0)
        return ::fchmod(descriptor, (S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH) &
                                        ~c_umask) == 0;
    mode_t mode = replaced.st_mode & c_permissions;
    if (::fchown(descriptor, static_cast<uid_t>(-1), replaced.st_gid) != 0)
        mode &= ~static_cast<mode_t>(S_IRWXG);
    return ::fchmod(descriptor, mode) == 0;
}

} // namespace

ResultFile::ResultFile(const Text& path) : m_path(UTF8::ToUTF8(path)), m_lock(false) {}

ResultFile::~ResultFile()
{
    Discard();
    if (m_file)
        std::fclose(m_file);
}

bool ResultFile::Open()
{
    return ExamineOldFile() && Create();
}

bool ResultFile::Write(const char* bytes, std::size_t count)
{
    m_size += count;
    return std::fwrite(bytes, 1, count, m_file) == count || FailWithErrno();
}

bool ResultFile::Commit()
{
    if (!AdoptPermissions(::fileno(m_file), m_replaced))
        return FailWithErrno();
    const int closed = std::fclose(m_file);
    m_file = nullptr;
    if (closed != 0)
        return FailWithErrno();

    const MutexLocker locker(m_lock, MutexInternal::Infinite);
    if (m_temporaryPath.empty())
        return Fail(L"it was cancelled");
    if (std::rename(m_temporaryPath.c_str(), m_path.c_str()) != 0)
        return FailWithErrno();
    m_temporaryPath.clear();
    return true;
}

void ResultFile::Discard()
{
    const MutexLocker locker(m_lock, MutexInternal::Infinite);
    if (!m_temporaryPath.empty())
        ::unlink(m_temporaryPath.c_str());
    m_temporaryPath.clear();
}

// Stores the status of the file that will be replaced. False if it must not be replaced or cannot
// be examined. Does not follow a symbolic link.
bool ResultFile::ExamineOldFile()
{
    if (::lstat(m_path.c_str(), &m_replaced) != 0) {
        m_replaced = {};
        return errno == ENOENT || FailWithErrno();
    }
    if (S_ISLNK(m_replaced.st_mode))
        return Fail(L"it is a link");
    if (!S_ISREG(m_replaced.st_mode))
        return Fail(L"it is not a regular file");
    return m_replaced.st_uid == ::geteuid() || Fail(L"it belongs to another user");
}

// mkostemp() chooses a name that nobody can predict, and never follows a symbolic link.
bool ResultFile::Create()
{
    const MutexLocker locker(m_lock, MutexInternal::Infinite);
    std::string path = m_path.substr(0, m_path.rfind('/') + 1) + ".host-XXXXXX";
    const int descriptor = ::mkostemp(path.data(), O_CLOEXEC);
    if (descriptor < 0)
        return FailWithErrno();
    m_temporaryPath = path;
    m_file = ::fdopen(descriptor, "w");
    if (m_file)
        return true;
    FailWithErrno();
    ::close(descriptor);
    return false;
}

bool ResultFile::Fail(const Text& error)
{
    m_error = error;
    return false;
}

bool ResultFile::FailWithErrno()
{
    return Fail(UTF8::ToUNICODE(std::generic_category().message(errno)));
}
