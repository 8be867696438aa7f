#include "toolkit/ipc/SocketSet.Private.h"

#include <sys/epoll.h>

namespace Toolkit {
namespace {

constexpr int c_mostAtOnce = 32;

} // namespace

SocketSet::SocketSet() : m_file(::epoll_create1(EPOLL_CLOEXEC)) {}

bool SocketSet::Add(int socket)
{
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = socket;
    return ::epoll_ctl(m_file.Get(), EPOLL_CTL_ADD, socket, &event) == 0;
}

bool SocketSet::Remove(int socket)
{
    epoll_event ignored{};
    return ::epoll_ctl(m_file.Get(), EPOLL_CTL_DEL, socket, &ignored) == 0;
}

std::vector<int> SocketSet::TakeReadable() const
{
    epoll_event events[c_mostAtOnce];
    const int count = ::epoll_wait(m_file.Get(), events, c_mostAtOnce, 0);
    std::vector<int> sockets;
    for (int i = 0; i < count; ++i)
        sockets.push_back(events[i].data.fd);
    return sockets;
}

} // namespace Toolkit
