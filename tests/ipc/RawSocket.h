#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace Toolkit::TestSupport {

/// A Unix domain socket on which the test sends and receives raw bytes.
class RawSocket {
public:
    RawSocket() : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {}
    ~RawSocket() { Close(); }

    RawSocket(RawSocket&& other) noexcept : m_socket(other.m_socket) { other.m_socket = -1; }
    RawSocket(const RawSocket&) = delete;
    RawSocket& operator=(const RawSocket&) = delete;

    static RawSocket ConnectedTo(const std::filesystem::path& path)
    {
        RawSocket socket;
        EXPECT_EQ(socket.Connect(path), 0) << path;
        return socket;
    }

    static RawSocket ListeningAt(const std::filesystem::path& path, int backlog = 16)
    {
        RawSocket socket;
        EXPECT_EQ(socket.Bind(path), 0) << path;
        EXPECT_EQ(::listen(socket.m_socket, backlog), 0);
        return socket;
    }

    int Connect(const std::filesystem::path& path) const
    {
        const sockaddr_un address = AddressOf(path);
        return ::connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    }

    int Bind(const std::filesystem::path& path) const
    {
        const sockaddr_un address = AddressOf(path);
        return ::bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    }

    /// Whether a client is waiting to be accepted.
    bool HasWaitingClient() const
    {
        pollfd waiting{m_socket, POLLIN, 0};
        return ::poll(&waiting, 1, 0) == 1;
    }

    /// Accepts the next client. Returns a closed socket if none connects within `c_limitMs`.
    RawSocket Accept() const
    {
        pollfd waiting{m_socket, POLLIN, 0};
        EXPECT_EQ(::poll(&waiting, 1, c_limitMs), 1);
        return RawSocket(waiting.revents != 0 ? ::accept(m_socket, nullptr, nullptr) : -1);
    }

    /// Sends all `bytes`. Returns false if the peer has closed its end.
    bool Send(const std::string& bytes) const
    {
        std::size_t sent = 0;
        while (sent < bytes.size()) {
            const ssize_t count =
                ::send(m_socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
            if (count <= 0)
                return false;
            sent += static_cast<std::size_t>(count);
        }
        return true;
    }

    /// Receives `count` bytes; fewer if the peer closes its end or sends nothing for `c_limitMs`.
    std::string Receive(std::size_t count) const
    {
        std::string bytes;
        char buffer[65536];
        while (bytes.size() < count) {
            pollfd waiting{m_socket, POLLIN, 0};
            if (::poll(&waiting, 1, c_limitMs) <= 0)
                break;
            const std::size_t wanted = std::min(count - bytes.size(), sizeof buffer);
            const ssize_t received = ::recv(m_socket, buffer, wanted, 0);
            if (received <= 0)
                break;
            bytes.append(buffer, static_cast<std::size_t>(received));
        }
        return bytes;
    }

    std::string ReceiveAll() const { return Receive(std::string::npos); }

    /// Receives and discards bytes until the peer closes its end. Returns false if the peer sends
    /// nothing for `c_limitMs`.
    bool IsClosedByPeer() const
    {
        ReceiveAll();
        char byte = 0;
        const ssize_t count = ::recv(m_socket, &byte, 1, MSG_DONTWAIT);
        return count == 0 || (count < 0 && errno != EAGAIN);
    }

    void Close()
    {
        if (m_socket >= 0)
            ::close(m_socket);
        m_socket = -1;
    }

private:
    static constexpr int c_limitMs = 60000;

    explicit RawSocket(int socket) : m_socket(socket) {}

    static sockaddr_un AddressOf(const std::filesystem::path& path)
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        EXPECT_LT(path.native().size(), sizeof address.sun_path);
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        return address;
    }

    int m_socket;
};

} // namespace Toolkit::TestSupport
