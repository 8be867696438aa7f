#include "toolkit/base/FileReplacement.h"

#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Toolkit::Base {
namespace {

// Returns the path of the file that `path` leads to through symbolic links; empty if there are too
// many links, as in a loop. Unlike realpath(3), works even if the file does not exist.
std::string FollowLinks(std::string path)
{
    constexpr int maxLinks = 40; // the limit of Linux: path_resolution(7)

    for (int i = 0; i <= maxLinks; ++i) {
        char link[PATH_MAX];
        const ::ssize_t length = ::readlink(path.c_str(), link, sizeof link);
        if (length <= 0)
            return path;
        const std::string to(link, static_cast<std::size_t>(length));
        path.replace(to.front() == '/' ? 0 : path.rfind('/') + 1, std::string::npos, to);
    }
    return {};
}

} // namespace

FileReplacement::FileReplacement(const std::string& path) : m_target(FollowLinks(path))
{
    if (m_target.empty())
        return;
    struct stat status {};
    const bool exists = ::stat(m_target.c_str(), &status) == 0;
    if (exists && !S_ISREG(status.st_mode))
        return;
    CreateTemporary();
    if (!m_file.IsOpen())
        return;
    if (exists)
        ::fchmod(m_file.Get(), status.st_mode & 07777);
    else
        RecreateTemporary();
}

// Uses mkostemp(), because it finds a free name that nobody can predict.
void FileReplacement::CreateTemporary()
{
    std::string name = m_target + ".XXXXXX";
    m_file = FileDescriptor(::mkostemp(name.data(), O_CLOEXEC));
    if (m_file.IsOpen())
        m_temporary = std::move(name);
}

// Creates the file again with open(), because a file from mkostemp() is accessible to its owner
// only. open() applies the umask and the default permissions of the directory. Others may know the
// name by now, so it is an error if a file with this name exists again.
void FileReplacement::RecreateTemporary()
{
    constexpr mode_t readAndWriteForAll = 0666;

    ::unlink(m_temporary.c_str());
    m_file = FileDescriptor(
        ::open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, readAndWriteForAll));
    if (!m_file.IsOpen())
        m_temporary.clear();
}

FileReplacement::~FileReplacement()
{
    if (!m_temporary.empty())
        ::unlink(m_temporary.c_str());
}

bool FileReplacement::Write(const char* bytes, std::size_t length)
{
    return m_file.IsOpen() && m_file.WriteAll(bytes, length);
}

bool FileReplacement::Commit()
{
    // Some file systems report a full disk only at fsync() or close().
    if (!m_file.IsOpen() || ::fsync(m_file.Get()) != 0 || !m_file.Close() ||
        ::rename(m_temporary.c_str(), m_target.c_str()) != 0)
        return false;
    m_temporary.clear();
    return true;
}

} // namespace Toolkit::Base
