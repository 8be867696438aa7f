#include "toolkit/ipc/LocalSocket.Private.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Toolkit::LocalSocket {

Base::FileDescriptor Create()
{
    return Base::FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

bool RestrictToOwner(const Base::FileDescriptor& socket)
{
    // The file that bind() makes gets the mode of its socket. The process's umask, which could do
    // the same, belongs to other threads too.
    return ::fchmod(socket.Get(), S_IRUSR | S_IWUSR) == 0;
}

Base::FileDescriptor Accept(const Base::FileDescriptor& listener)
{
    return Base::FileDescriptor(
        ::accept4(listener.Get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
}

ssize_t Send(const Base::FileDescriptor& socket, const char* bytes, std::size_t length)
{
    return ::send(socket.Get(), bytes, length, MSG_DONTWAIT | MSG_NOSIGNAL);
}

bool IsPeerOfThisUser(const Base::FileDescriptor& socket)
{
    ucred peer{};
    socklen_t length = sizeof peer;
    return ::getsockopt(socket.Get(), SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 &&
           peer.uid == ::geteuid();
}

} // namespace Toolkit::LocalSocket
