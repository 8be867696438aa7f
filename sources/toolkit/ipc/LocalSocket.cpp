#include "toolkit/ipc/LocalSocket.Private.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace Toolkit::LocalSocket {
namespace {

// False for a path that does not fit.
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

} // namespace

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

ssize_t Receive(const Base::FileDescriptor& socket, char* bytes, std::size_t length)
{
    return ::recv(socket.Get(), bytes, length, MSG_DONTWAIT);
}

bool SetWaiting(const Base::FileDescriptor& socket, bool waits)
{
    return ::fcntl(socket.Get(), F_SETFL, waits ? 0 : O_NONBLOCK) == 0;
}

} // namespace Toolkit::LocalSocket
