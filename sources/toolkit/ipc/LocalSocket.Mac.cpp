#include "toolkit/ipc/LocalSocket.Private.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace Toolkit::LocalSocket {
namespace {

bool Prepare(const Base::FileDescriptor& socket)
{
    const int on = 1;
    return socket.IsOpen() && ::fcntl(socket.Get(), F_SETFD, FD_CLOEXEC) == 0 &&
           ::setsockopt(socket.Get(), SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on) == 0;
}

} // namespace

Base::FileDescriptor Create()
{
    Base::FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    return Prepare(socket) ? std::move(socket) : Base::FileDescriptor();
}

bool RestrictToOwner(const Base::FileDescriptor&)
{
    // A socket has no mode before it has a file: IsPeerOfThisUser() decides.
    return true;
}

Base::FileDescriptor Accept(const Base::FileDescriptor& listener)
{
    Base::FileDescriptor socket(::accept(listener.Get(), nullptr, nullptr));
    return Prepare(socket) && SetWaiting(socket, false) ? std::move(socket)
                                                        : Base::FileDescriptor();
}

ssize_t Send(const Base::FileDescriptor& socket, const char* bytes, std::size_t length)
{
    return ::send(socket.Get(), bytes, length, MSG_DONTWAIT);
}

bool IsPeerOfThisUser(const Base::FileDescriptor& socket)
{
    uid_t user = 0;
    gid_t group = 0;
    return ::getpeereid(socket.Get(), &user, &group) == 0 && user == ::geteuid();
}

} // namespace Toolkit::LocalSocket
