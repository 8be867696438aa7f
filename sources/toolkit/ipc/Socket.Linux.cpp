#include "toolkit/ipc/Socket.Private.h"

#include <cstdint>
#include <ctime>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace Toolkit::Ipc {
namespace {

constexpr int c_maxEventsPerPoll = 32;

// Adds `descriptor` to the set, which reports it as `reportedAs`.
bool AddAs(const Base::FileDescriptor& set, int descriptor, int reportedAs)
{
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = reportedAs;
    return ::epoll_ctl(set.Get(), EPOLL_CTL_ADD, descriptor, &event) == 0;
}

} // namespace

Base::FileDescriptor CreateSocket()
{
    return Base::FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

bool RestrictToOwner(const Base::FileDescriptor& socket)
{
    // bind() creates the file with the mode of its socket. Setting the umask would do the same, but
    // it applies to every thread.
    return ::fchmod(socket.Get(), S_IRUSR | S_IWUSR) == 0;
}

Base::FileDescriptor AcceptClient(const Base::FileDescriptor& listener)
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

SocketSet::SocketSet()
    : m_file(::epoll_create1(EPOLL_CLOEXEC)),
      m_clock(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))
{
    if (m_clock.IsOpen() && !AddAs(m_file, m_clock.Get(), c_tick))
        m_clock.Close();
}

bool SocketSet::IsUsable() const
{
    return m_file.IsOpen() && m_clock.IsOpen();
}

bool SocketSet::Add(int socket)
{
    return AddAs(m_file, socket, socket);
}

bool SocketSet::Remove(int socket)
{
    epoll_event ignored{};
    return ::epoll_ctl(m_file.Get(), EPOLL_CTL_DEL, socket, &ignored) == 0;
}

void SocketSet::SetTicking(unsigned int intervalMs)
{
    const timespec interval{intervalMs / 1000, intervalMs % 1000 * 1000000L};
    const itimerspec times{interval, interval};
    ::timerfd_settime(m_clock.Get(), 0, &times, nullptr);
}

std::vector<int> SocketSet::PollReadable()
{
    epoll_event events[c_maxEventsPerPoll];
    const int count = ::epoll_wait(m_file.Get(), events, c_maxEventsPerPoll, 0);
    std::vector<int> readable;
    for (int i = 0; i < count; ++i) {
        // Reading the clock resets it; otherwise it would stay readable.
        std::uint64_t ticks = 0;
        const bool isReadable = events[i].data.fd != c_tick ||
                                ::read(m_clock.Get(), &ticks, sizeof ticks) == sizeof ticks;
        if (isReadable)
            readable.push_back(events[i].data.fd);
    }
    return readable;
}

} // namespace Toolkit::Ipc
