#include "toolkit/system/Network.h"

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <limits>
#include <memory>
#include <netdb.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>

namespace Toolkit {
namespace {

using Clock = std::chrono::steady_clock;
using Addresses = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

Addresses Resolve(const std::string& host, unsigned short port)
{
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &wanted, &found) != 0)
        found = nullptr;
    return {found, &::freeaddrinfo};
}

int GetRemainingMs(Clock::time_point deadline)
{
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    // A negative time-out would wait forever.
    return static_cast<int>(std::clamp<long long>(left, 0, std::numeric_limits<int>::max()));
}

// Waits until a pending connection is open, has failed, or `deadline` passes; true if it is open.
bool FinishConnecting(int socket, Clock::time_point deadline)
{
    pollfd waiting{socket, POLLOUT, 0};
    int ready = 0;
    do {
        ready = ::poll(&waiting, 1, GetRemainingMs(deadline));
    } while (ready < 0 && errno == EINTR);
    int error = 0;
    socklen_t length = sizeof error;
    return ready > 0 && ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &length) == 0 &&
           error == 0;
}

bool Connects(const addrinfo& address, Clock::time_point deadline)
{
    const Base::FileDescriptor socket(
        ::socket(address.ai_family, address.ai_socktype, address.ai_protocol));
    if (!socket.IsOpen() || ::fcntl(socket.Get(), F_SETFD, FD_CLOEXEC) != 0 ||
        ::fcntl(socket.Get(), F_SETFL, O_NONBLOCK) != 0)
        return false;
    if (::connect(socket.Get(), address.ai_addr, address.ai_addrlen) == 0)
        return true;
    return errno == EINPROGRESS && FinishConnecting(socket.Get(), deadline);
}

} // namespace

bool Network::TestNetwork()
{
    return TestConnection(c_testHost, c_testPort, c_testTimeoutMs);
}

bool Network::TestConnection(const TString<wchar_t>& host, unsigned short port,
                             unsigned int timeoutMs)
{
    return Base::TryOr(false, [&] {
        const Addresses addresses = Resolve(Base::EncodeUtf8(host), port);
        const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
        for (const addrinfo* address = addresses.get(); address; address = address->ai_next) {
            if (Connects(*address, deadline))
                return true;
        }
        return false;
    });
}

} // namespace Toolkit
