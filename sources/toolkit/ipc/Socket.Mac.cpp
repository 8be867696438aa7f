#include "toolkit/ipc/Socket.Private.h"

#include <ctime>
#include <fcntl.h>
#include <sys/event.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace Toolkit::Ipc {
namespace {

constexpr int c_maxEventsPerPoll = 32;

bool SetOptions(const Base::FileDescriptor& socket)
{
    const int on = 1;
    return socket.IsOpen() && ::fcntl(socket.Get(), F_SETFD, FD_CLOEXEC) == 0 &&
           ::setsockopt(socket.Get(), SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on) == 0;
}

bool ChangeFilter(int queue, int identifier, short filter, unsigned short flags, long data)
{
    struct kevent change {};
    EV_SET(&change, identifier, filter, flags, 0, data, nullptr);
    return ::kevent(queue, &change, 1, nullptr, 0, nullptr) == 0;
}

} // namespace

Base::FileDescriptor CreateSocket()
{
    Base::FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    return SetOptions(socket) ? std::move(socket) : Base::FileDescriptor();
}

bool RestrictToOwner(const Base::FileDescriptor&)
{
    // On macOS, a socket gets a mode only when bind() creates its file. IsPeerOfThisUser() rejects
    // other users instead.
    return true;
}

Base::FileDescriptor AcceptClient(const Base::FileDescriptor& listener)
{
    Base::FileDescriptor socket(::accept(listener.Get(), nullptr, nullptr));
    return SetOptions(socket) && SetBlocking(socket, false) ? std::move(socket)
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

SocketSet::SocketSet() : m_file(::kqueue())
{
    ::fcntl(m_file.Get(), F_SETFD, FD_CLOEXEC); // harmless if kqueue() failed
}

bool SocketSet::IsUsable() const
{
    return m_file.IsOpen();
}

bool SocketSet::Add(int socket)
{
    return ChangeFilter(m_file.Get(), socket, EVFILT_READ, EV_ADD, 0);
}

bool SocketSet::Remove(int socket)
{
    return ChangeFilter(m_file.Get(), socket, EVFILT_READ, EV_DELETE, 0);
}

void SocketSet::SetTicking(unsigned int intervalMs)
{
    ChangeFilter(m_file.Get(), 0, EVFILT_TIMER, intervalMs > 0 ? EV_ADD : EV_DELETE, intervalMs);
}

std::vector<int> SocketSet::PollReadable()
{
    struct kevent events[c_maxEventsPerPoll];
    const timespec noWait{};
    const int count = ::kevent(m_file.Get(), nullptr, 0, events, c_maxEventsPerPoll, &noWait);
    std::vector<int> readable;
    for (int i = 0; i < count; ++i)
        readable.push_back(events[i].filter == EVFILT_TIMER ? c_tick
                                                            : static_cast<int>(events[i].ident));
    return readable;
}

} // namespace Toolkit::Ipc
