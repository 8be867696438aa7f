#include "toolkit/ipc/Socket.Private.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace Toolkit::Ipc {
namespace {

constexpr std::chrono::seconds c_maxLockWait{2};
constexpr std::chrono::milliseconds c_retryInterval{10};

// False for a path that is empty or too long.
bool SetPath(sockaddr_un& address, const std::string& path)
{
    if (path.empty() || path.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return false;
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return true;
}

bool Connect(const Base::FileDescriptor& socket, const std::string& path)
{
    sockaddr_un address{};
    return SetPath(address, path) &&
           ::connect(socket.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
}

bool Bind(const Base::FileDescriptor& socket, const std::string& path)
{
    sockaddr_un address{};
    return SetPath(address, path) &&
           ::bind(socket.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
}

bool IsSameFile(const struct stat& one, const struct stat& other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool IsOwnSocket(const struct stat& status)
{
    return S_ISSOCK(status.st_mode) && status.st_uid == ::geteuid();
}

// False, with the reason in `errno`, when `path` is anything but a socket of this user.
bool FindOwnSocket(const std::string& path, struct stat& status)
{
    if (::lstat(path.c_str(), &status) != 0)
        return false;
    if (!IsOwnSocket(status))
        errno = EACCES;
    return IsOwnSocket(status);
}

Base::FileDescriptor OpenDirectory(const std::string& path)
{
    return Base::FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

// Whether a server listens at `path`. Also true if the server is too busy to accept, and if there
// is no way to tell.
bool IsServed(const std::string& path)
{
    const Base::FileDescriptor socket = CreateSocket();
    if (!socket.IsOpen() || !SetBlocking(socket, false))
        return true;
    return Connect(socket, path) || (errno != ECONNREFUSED && errno != ENOENT);
}

// Held by the one server that may examine a socket file and replace it. Without the lock, a second
// server would treat the new file, on which nobody listens yet, as left by a crash.
//
// A lock file next to the socket file, locked with flock(2). Its holder removes it before releasing
// the lock. The next server uses, and then removes, a lock file that a crash has left.
class TakeOverLock {
public:
    TakeOverLock(const Base::FileDescriptor& directory, const std::string& socketName)
        : m_directory(directory), m_name("." + socketName + ".takeover")
    {
    }
    ~TakeOverLock();

    TakeOverLock(const TakeOverLock&) = delete;
    TakeOverLock& operator=(const TakeOverLock&) = delete;

    // Returns false if another server does not release the lock in time. Returns true, without the
    // lock, if locking is impossible, for example because another user has a file of that name.
    bool Wait();

private:
    enum class State { Held, HeldElsewhere, Unavailable };

    State TryLock();

    const Base::FileDescriptor& m_directory;
    const std::string m_name;
    Base::FileDescriptor m_file;
};

TakeOverLock::~TakeOverLock()
{
    if (m_file.IsOpen())
        ::unlinkat(m_directory.Get(), m_name.c_str(), 0);
}

bool TakeOverLock::Wait()
{
    const auto deadline = std::chrono::steady_clock::now() + c_maxLockWait;
    State state = TryLock();
    while (state == State::HeldElsewhere && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(c_retryInterval);
        state = TryLock();
    }
    return state != State::HeldElsewhere;
}

TakeOverLock::State TakeOverLock::TryLock()
{
    Base::FileDescriptor file(::openat(m_directory.Get(), m_name.c_str(),
                                       O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC,
                                       S_IRUSR | S_IWUSR));
    struct stat opened {};
    // Only an empty file that no other user can open is a lock file.
    if (!file.IsOpen() || ::fstat(file.Get(), &opened) != 0 || !S_ISREG(opened.st_mode) ||
        opened.st_uid != ::geteuid() || (opened.st_mode & (S_IRWXG | S_IRWXO)) != 0 ||
        opened.st_size != 0)
        return State::Unavailable;
    if (::flock(file.Get(), LOCK_EX | LOCK_NB) != 0)
        return errno == EWOULDBLOCK ? State::HeldElsewhere : State::Unavailable;
    // The previous holder may have removed the file in the meantime.
    struct stat named {};
    if (::fstatat(m_directory.Get(), m_name.c_str(), &named, AT_SYMLINK_NOFOLLOW) != 0 ||
        !IsSameFile(opened, named))
        return State::HeldElsewhere;
    m_file = std::move(file);
    return State::Held;
}

} // namespace

bool ConnectToOwn(const Base::FileDescriptor& socket, const std::string& path)
{
    // connect() follows symbolic links, so the file is checked before and after. Another user can
    // put a link in place of a file that has been removed, but cannot put that same file back.
    struct stat before {};
    struct stat after {};
    if (!FindOwnSocket(path, before) || !Connect(socket, path) || !FindOwnSocket(path, after))
        return false;
    if (!IsSameFile(before, after))
        errno = EACCES;
    return IsSameFile(before, after);
}

bool HasWaitingClient(const Base::FileDescriptor& listener)
{
    pollfd waiting{listener.Get(), POLLIN, 0};
    return ::poll(&waiting, 1, 0) > 0;
}

ssize_t Receive(const Base::FileDescriptor& socket, char* bytes, std::size_t length)
{
    return ::recv(socket.Get(), bytes, length, MSG_DONTWAIT);
}

bool SetBlocking(const Base::FileDescriptor& socket, bool blocks)
{
    return ::fcntl(socket.Get(), F_SETFL, blocks ? 0 : O_NONBLOCK) == 0;
}

SocketFile::~SocketFile()
{
    // No other server replaces the file while this one listens, so the file that IsInPlace() has
    // checked is the one that is removed.
    if (BelongsToThisProcess() && IsInPlace())
        ::unlinkat(m_directory.Get(), m_name.c_str(), 0);
}

bool SocketFile::BelongsToThisProcess() const
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

    TakeOverLock lock(m_directory, m_name);
    return lock.Wait() && ListenLocked(path);
}

bool SocketFile::ListenLocked(const std::string& path)
{
    m_socket = CreateSocket();
    if (!m_socket.IsOpen() || !SetBlocking(m_socket, false) || !RestrictToOwner(m_socket) ||
        !RemoveStaleFile(path) || !Bind(m_socket, path))
        return false;
    struct stat status {};
    if (::fstatat(m_directory.Get(), m_name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return false;
    m_device = status.st_dev;
    m_inode = status.st_ino;
    m_process = ::getpid();
    m_ownSocket.Watch(m_socket.Get());
    return ::listen(m_socket.Get(), SOMAXCONN) == 0;
}

// Returns whether `path` is now free.
bool SocketFile::RemoveStaleFile(const std::string& path) const
{
    struct stat status {};
    if (::fstatat(m_directory.Get(), m_name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT;
    if (!IsOwnSocket(status) || IsServed(path))
        return false;
    return ::unlinkat(m_directory.Get(), m_name.c_str(), 0) == 0 || errno == ENOENT;
}

} // namespace Toolkit::Ipc
