#include "toolkit/base/InstanceLock.h"
#include "toolkit/base/ShortenName.h"
#include "toolkit/ipc/LocalSocket.Private.h"
#include "toolkit/ipc/SocketFile.Private.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <sys/socket.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace Toolkit {
namespace {

constexpr std::chrono::seconds c_longestTakeOver{2};
constexpr std::chrono::milliseconds c_retryInterval{10};

// An InstanceLock is held by all threads of its process.
std::mutex s_mutex;

Base::FileDescriptor OpenDirectory(const std::string& path)
{
    return Base::FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

// One name for every path that leads to the file.
std::wstring LockName(const Base::FileDescriptor& directory, const std::string& file)
{
    struct stat status {};
    if (::fstat(directory.Get(), &status) != 0)
        return {};
    const std::string name = std::to_string(status.st_dev) + "." + std::to_string(status.st_ino) +
                             "." + Base::FormatHash(file) + ".ipc";
    return std::wstring(name.begin(), name.end());
}

// Between its look at a file and its own listening a server must be alone: another one would take
// the file, which nobody listens to yet, for a stale one. False when another process does not end
// in time; where no lock can be had there is none.
bool WaitForLock(std::unique_ptr<Base::InstanceLock>& lock, const std::wstring& name)
{
    const auto deadline = std::chrono::steady_clock::now() + c_longestTakeOver;
    for (;;) {
        lock = std::make_unique<Base::InstanceLock>(name);
        if (lock->GetState() != Base::InstanceLock::State::HeldElsewhere)
            return true;
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(c_retryInterval);
    }
}

// A server that is too busy to accept is alive too.
bool IsServed(const std::string& path)
{
    const Base::FileDescriptor socket = LocalSocket::Create();
    if (!socket.IsOpen() || !LocalSocket::SetWaiting(socket, false))
        return true;
    return LocalSocket::Connect(socket, path) || (errno != ECONNREFUSED && errno != ENOENT);
}

} // namespace

SocketFile::~SocketFile()
{
    // As long as the socket listens no other server replaces the file: what is compared is removed.
    if (IsOfThisProcess() && IsInPlace())
        ::unlinkat(m_directory.Get(), m_name.c_str(), 0);
}

bool SocketFile::IsOfThisProcess() const
{
    return m_process == ::getpid();
}

bool SocketFile::IsInPlace() const
{
    struct stat status {};
    return m_inode != 0 &&
           ::fstatat(m_directory.Get(), m_name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           status.st_dev == m_device && status.st_ino == m_inode;
}

bool SocketFile::Listen(const std::string& path)
{
    const std::size_t separator = path.rfind('/');
    if (separator == std::string::npos)
        return false;
    m_directory = OpenDirectory(path.substr(0, separator + 1));
    m_name = path.substr(separator + 1);
    if (!m_directory.IsOpen() || m_name.empty())
        return false;

    const std::lock_guard<std::mutex> guard(s_mutex);
    std::unique_ptr<Base::InstanceLock> lock;
    return WaitForLock(lock, LockName(m_directory, m_name)) && ListenLocked(path);
}

bool SocketFile::ListenLocked(const std::string& path)
{
    m_socket = LocalSocket::Create();
    if (!m_socket.IsOpen() || !LocalSocket::SetWaiting(m_socket, false) ||
        !LocalSocket::RestrictToOwner(m_socket) || !MakeRoom(path) ||
        !LocalSocket::Bind(m_socket, path))
        return false;
    struct stat status {};
    if (::fstatat(m_directory.Get(), m_name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return false;
    m_device = status.st_dev;
    m_inode = status.st_ino;
    m_process = ::getpid();
    return ::listen(m_socket.Get(), SOMAXCONN) == 0;
}

bool SocketFile::MakeRoom(const std::string& path) const
{
    struct stat status {};
    if (::fstatat(m_directory.Get(), m_name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT;
    if (!S_ISSOCK(status.st_mode) || status.st_uid != ::geteuid() || IsServed(path))
        return false;
    return ::unlinkat(m_directory.Get(), m_name.c_str(), 0) == 0 || errno == ENOENT;
}

} // namespace Toolkit
