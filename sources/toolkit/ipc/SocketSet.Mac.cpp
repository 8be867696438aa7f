#include "toolkit/ipc/SocketSet.Private.h"

#include <fcntl.h>
#include <sys/event.h>

namespace Toolkit {
namespace {

constexpr int c_mostAtOnce = 32;

bool Change(int set, int identifier, short filter, unsigned short action, long value)
{
    struct kevent change {};
    EV_SET(&change, identifier, filter, action, 0, value, nullptr);
    return ::kevent(set, &change, 1, nullptr, 0, nullptr) == 0;
}

} // namespace

SocketSet::SocketSet() : m_file(::kqueue())
{
    ::fcntl(m_file.Get(), F_SETFD, FD_CLOEXEC);
}

bool SocketSet::IsUsable() const
{
    return m_file.IsOpen();
}

bool SocketSet::Add(int socket)
{
    return Change(m_file.Get(), socket, EVFILT_READ, EV_ADD, 0);
}

bool SocketSet::Remove(int socket)
{
    return Change(m_file.Get(), socket, EVFILT_READ, EV_DELETE, 0);
}

void SocketSet::SetTicking(unsigned int intervalMs)
{
    Change(m_file.Get(), 0, EVFILT_TIMER, intervalMs > 0 ? EV_ADD : EV_DELETE, intervalMs);
}

std::vector<int> SocketSet::TakeReadable()
{
    struct kevent events[c_mostAtOnce];
    const timespec atOnce{};
    const int count = ::kevent(m_file.Get(), nullptr, 0, events, c_mostAtOnce, &atOnce);
    std::vector<int> sockets;
    for (int i = 0; i < count; ++i)
        sockets.push_back(events[i].filter == EVFILT_TIMER ? c_tick
                                                           : static_cast<int>(events[i].ident));
    return sockets;
}

} // namespace Toolkit
