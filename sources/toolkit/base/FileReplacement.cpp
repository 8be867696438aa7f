#include "toolkit/base/FileReplacement.h"

#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace Toolkit::Base {
namespace {

// The file that `path` leads to through symbolic links; `path` itself when there is none.
std::string ResolveLinks(const std::string& path)
{
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr),
                                                               &std::free);
    return resolved ? resolved.get() : path;
}

} // namespace

FileReplacement::FileReplacement(const std::string& path) : m_target(ResolveLinks(path))
{
    std::string name = m_target + ".XXXXXX";
    m_file = FileDescriptor(::mkostemp(name.data(), O_CLOEXEC));
    if (!m_file.IsOpen())
        return;
    m_temporary = name;
    struct stat status {};
    if (::stat(m_target.c_str(), &status) == 0)
        ::fchmod(m_file.Get(), status.st_mode & 07777);
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
    // A disk that is full may tell so only when the data reach it.
    if (!m_file.IsOpen() || ::fsync(m_file.Get()) != 0 || !m_file.Close() ||
        ::rename(m_temporary.c_str(), m_target.c_str()) != 0)
        return false;
    m_temporary.clear();
    return true;
}

} // namespace Toolkit::Base
