#include "toolkit/ipc/IPCClient.h"

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/ipc/Protocol.Private.h"
#include "toolkit/ipc/Socket.Private.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/types.h>

namespace Toolkit {
namespace {

using Clock = std::chrono::steady_clock;

// A connection to a server, with one deadline for everything done on it.
//
// Not a wxTCPClient, which works on the main thread only and waits for an answer without limit.
class Conversation {
public:
    explicit Conversation(Clock::time_point deadline) : m_deadline(deadline) {}

    bool Open(const std::string& path);
    bool Send(std::string_view bytes) const;
    bool Receive(char& byte) const;

private:
    std::chrono::milliseconds TimeLeft() const;
    bool SetConnectTimeout() const;
    bool Wait(short event) const;

    Base::FileDescriptor m_socket;
    Clock::time_point m_deadline;
};

std::chrono::milliseconds Conversation::TimeLeft() const
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_deadline - Clock::now());
    return std::max(left, std::chrono::milliseconds(0));
}

// Limits the duration of connect(), which blocks while the server's queue is full.
bool Conversation::SetConnectTimeout() const
{
    // A time-out of zero would mean no limit.
    const auto left = std::max(TimeLeft(), std::chrono::milliseconds(1));
    timeval limit{};
    limit.tv_sec = static_cast<time_t>(left.count() / 1000);
    limit.tv_usec = static_cast<suseconds_t>(left.count() % 1000 * 1000);
    return ::setsockopt(m_socket.Get(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit) == 0;
}

bool Conversation::Open(const std::string& path)
{
    m_socket = Ipc::CreateSocket();
    if (!m_socket.IsOpen())
        return false;
    do {
        if (!SetConnectTimeout())
            return false;
        if (Ipc::ConnectToOwn(m_socket, path))
            return Ipc::IsPeerOfThisUser(m_socket);
    } while (errno == EINTR);
    return false;
}

bool Conversation::Send(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const ssize_t count = Ipc::Send(m_socket, bytes.data(), bytes.size());
        if (count >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR && !((errno == EAGAIN || errno == EWOULDBLOCK) && Wait(POLLOUT)))
            return false;
    }
    return true;
}

bool Conversation::Receive(char& byte) const
{
    while (Wait(POLLIN)) {
        const ssize_t count = Ipc::Receive(m_socket, &byte, 1);
        if (count >= 0)
            return count == 1;
        if (errno != EINTR && errno != EAGAIN && errno != EWOULDBLOCK)
            return false;
    }
    return false;
}

// Waits for `event`. False when the deadline passes first, or when poll() fails.
bool Conversation::Wait(short event) const
{
    pollfd waiting{m_socket.Get(), event, 0};
    int ready = 0;
    do {
        ready = ::poll(&waiting, 1, static_cast<int>(TimeLeft().count()));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

bool Deliver(const TString<wchar_t>& service, const TString<wchar_t>& text)
{
    const Clock::time_point deadline =
        Clock::now() + std::chrono::milliseconds(IPCClient::c_timeoutMs);
    const std::wstring_view message = text.c_str(); // up to its first null character
    const std::string path = Ipc::MakeSocketPath(service);
    const std::string connect = Ipc::MakeConnectRequest(message);
    if (path.empty() || connect.empty())
        return false;

    Conversation conversation(deadline);
    char answer = 0;
    return conversation.Open(path) && conversation.Send(connect) && conversation.Receive(answer) &&
           answer == Ipc::c_accepted && conversation.Send(Ipc::MakeExecuteRequest(message));
}

// Whether a server listens. Does not wait, even if the server's queue is full.
bool FindsServer(const TString<wchar_t>& service)
{
    const Base::FileDescriptor socket = Ipc::CreateSocket();
    if (!socket.IsOpen() || !Ipc::SetBlocking(socket, false))
        return false;
    if (Ipc::ConnectToOwn(socket, Ipc::MakeSocketPath(service)))
        return Ipc::IsPeerOfThisUser(socket);
    // The server's queue is full.
    return errno == EAGAIN || errno == EWOULDBLOCK;
}

} // namespace

bool IPCClient::Connect(const TString<wchar_t>& service, const TString<wchar_t>& text)
{
    return Base::TryOr(false, [&] { return Deliver(service, text); });
}

bool IPCClient::IsServed(const TString<wchar_t>& service)
{
    return Base::TryOr(false, [&] { return FindsServer(service); });
}

} // namespace Toolkit
