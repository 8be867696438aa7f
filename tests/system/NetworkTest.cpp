#include "toolkit/system/Network.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <chrono>
#include <netdb.h>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace Toolkit {
namespace {

constexpr unsigned int c_timeoutMs = 10000;

// Listens on a loopback port that queues `backlog` connections, and accepts none.
class Listener {
public:
    explicit Listener(int backlog) : m_socket(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address = MakeLoopbackAddress(0);
        socklen_t length = sizeof address;
        EXPECT_EQ(::bind(m_socket, reinterpret_cast<sockaddr*>(&address), length), 0);
        EXPECT_EQ(::listen(m_socket, backlog), 0);
        EXPECT_EQ(::getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &length), 0);
        m_port = ntohs(address.sin_port);
    }
    ~Listener()
    {
        for (const int client : m_clients)
            ::close(client);
        ::close(m_socket);
    }

    unsigned short Port() const { return m_port; }

    // Starts more connections than the backlog holds.
    void FillBacklog()
    {
        for (int i = 0; i < 8; ++i) {
            const int client = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
            const sockaddr_in address = MakeLoopbackAddress(m_port);
            ::connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address);
            m_clients.push_back(client);
        }
    }

private:
    static sockaddr_in MakeLoopbackAddress(unsigned short port)
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(port);
        return address;
    }

    int m_socket;
    unsigned short m_port = 0;
    std::vector<int> m_clients;
};

TEST(NetworkTest, ConnectsToAListener)
{
    const Listener listener(8);

    EXPECT_TRUE(Network::TestConnection(L"127.0.0.1", listener.Port(), c_timeoutMs));
}

// Whether the system resolves `name` to an IPv4 address.
bool IsResolvable(const char* name)
{
    addrinfo hints{};
    hints.ai_family = AF_INET;
    addrinfo* addresses = nullptr;
    if (::getaddrinfo(name, nullptr, &hints, &addresses) != 0)
        return false;
    ::freeaddrinfo(addresses);
    return true;
}

TEST(NetworkTest, ResolvesHostNames)
{
    if (!IsResolvable("localhost"))
        GTEST_SKIP() << "this system has no address for localhost";
    const Listener listener(8);

    EXPECT_TRUE(Network::TestConnection(L"localhost", listener.Port(), c_timeoutMs));
}

TEST(NetworkTest, FailsForAClosedPortBeforeTheTimeout)
{
    unsigned short port = 0;
    {
        const Listener listener(8);
        port = listener.Port();
    }
    const auto start = std::chrono::steady_clock::now();

    EXPECT_FALSE(Network::TestConnection(L"127.0.0.1", port, c_timeoutMs));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(c_timeoutMs));
}

TEST(NetworkTest, FailsForAnUnknownHost)
{
    EXPECT_FALSE(Network::TestConnection(L"no host of this name", 80, c_timeoutMs));
    EXPECT_FALSE(Network::TestConnection(L"256.256.256.256", 80, c_timeoutMs));
}

TEST(NetworkTest, FailsAfterTheTimeoutWithoutAnAnswer)
{
    constexpr std::chrono::milliseconds timeout(300);
    Listener listener(0);
    listener.FillBacklog();
    const auto start = std::chrono::steady_clock::now();

    EXPECT_FALSE(Network::TestConnection(L"127.0.0.1", listener.Port(),
                                         static_cast<unsigned int>(timeout.count())));
    EXPECT_GE(std::chrono::steady_clock::now() - start, timeout - std::chrono::milliseconds(20));
}

TEST(NetworkTest, DefinesTheTestHostPortAndTimeout)
{
    EXPECT_EQ(std::wstring(Network::c_testHost), L"www.example.com");
    EXPECT_EQ(Network::c_testPort, 80);
    EXPECT_EQ(Network::c_testTimeoutMs, 2000u);
}

} // namespace
} // namespace Toolkit
