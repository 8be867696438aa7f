#include "toolkit/ipc/SocketSet.Private.h"

#include <fcntl.h>
#include <sys/event.h>

namespace Toolkit {
namespace {

constexpr int c_mostAtOnce = 32;

bool Change(int set, int socket, unsigned short action)
{
    struct kevent change {};
    EV_SET(&change, socket, EVFILT_READ, action, 0, 0, nullptr);
    return ::kevent(set, &change, 1, nullptr, 0, nullptr) == 0;
}

} // namespace

SocketSet::SocketSet() : m_file(::kqueue())
{
    ::fcntl(m_file.Get(), F_SETFD, FD_CLOEXEC);
}

bool SocketSet::Add(int socket)
{
    return Change(m_file.Get(), socket, EV_ADD);
}

bool SocketSet::Remove(int socket)
{
    return Change(m_file.Get(), socket, EV_DELETE);
}

std::vector<int> SocketSet::TakeReadable() const
{
    struct kevent events[c_mostAtOnce];
    const timespec atOnce{};
    const int count = ::kevent(m_file.Get(), nullptr, 0, events, c_mostAtOnce, &atOnce);
    std::vector<int> sockets;
    for (int i = 0; i < count; ++i)
        sockets.push_back(static_cast<int>(events[i].ident));
    return sockets;
}

} // namespace Toolkit
