#include "toolkit/ipc/IPCClient.h"
#include "toolkit/ipc/IPCServer.h"

#include "support/Sanitizers.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstddef>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "ipc/ServerFixture.h"

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using TestSupport::c_connect;
using TestSupport::c_executeA;
using TestSupport::CreateListener;
using TestSupport::RawSocket;
using TestSupport::ServeWhile;
using namespace std::string_literals;

using IPCServerLimitsTest = TestSupport::ServerFixture;

rlimit GetDescriptorLimit()
{
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    return limit;
}

// Raises this process's descriptor limit to its hard limit.
class RaisedDescriptorLimit {
public:
    RaisedDescriptorLimit()
    {
        const rlimit raised{m_limit.rlim_max, m_limit.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &raised);
    }
    ~RaisedDescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &m_limit); }

    RaisedDescriptorLimit(const RaisedDescriptorLimit&) = delete;
    RaisedDescriptorLimit& operator=(const RaisedDescriptorLimit&) = delete;

private:
    const rlimit m_limit = GetDescriptorLimit();
};

// Uses up all descriptors of this process except `count`. While the object exists, a test must not
// call member functions of its fixture: UndefinedBehaviorSanitizer needs descriptors to check the
// fixture's type.
class FewDescriptors {
public:
    explicit FewDescriptors(std::size_t count)
    {
        // A low limit, so that few files use up all descriptors.
        const rlimit few{100, m_limit.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &few);
        for (int file = Open(); file >= 0; file = Open())
            m_files.push_back(file);
        EXPECT_GE(m_files.size(), count);
        for (; count > 0 && !m_files.empty(); --count) {
            ::close(m_files.back());
            m_files.pop_back();
        }
    }
    ~FewDescriptors()
    {
        for (const int file : m_files)
            ::close(file);
        ::setrlimit(RLIMIT_NOFILE, &m_limit);
    }

    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

private:
    static int Open() { return ::open("/dev/null", O_RDONLY | O_CLOEXEC); }

    const rlimit m_limit = GetDescriptorLimit();
    std::vector<int> m_files;
};

#ifndef TOOLKIT_SANITIZER
long GetResidentMebibytes()
{
    std::ifstream file("/proc/self/statm");
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return resident * ::sysconf(_SC_PAGESIZE) >> 20;
}
#endif

TEST_F(IPCServerLimitsTest, DisconnectsOnAProtocolErrorOrADisconnectMessage)
{
    const std::string cases[] = {"\x0B",                        // before the topic
                                 "\x01\x01\x04\0\0\0\0\0\0\0"s, // before the topic
                                 "GET / HTTP/1.1\r\n\r\n",      // another protocol
                                 "\x0A\x01\0\0\x01t"s,          // a topic of 16 MiB and 1 byte
                                 "\x0A\xFF\xFF\xFF\xFF"s,       // a topic of 4 GiB - 1 byte
                                 c_connect + c_connect,         // a second topic
                                 c_connect + "\x02", // Request, which the server does not support
                                 c_connect + "\x09", // Fail, likewise
                                 c_connect + "\x01\x01\x05\0\0\x04"s, // data of 64 MiB and 5 bytes
                                 c_connect + "\x01\x01\xFF\xFF\xFF\xFF"s, // data of 4 GiB - 1 byte
                                 c_connect + "\x0B"};                     // Disconnect
    const auto server = RunServer();

    ServeWhile([&] {
        for (const std::string& bytes : cases) {
            SCOPED_TRACE(testing::PrintToString(bytes));
            const RawSocket client = RawSocket::ConnectedTo(Path());
            EXPECT_TRUE(client.Send(bytes));
            EXPECT_TRUE(client.IsClosedByPeer());
        }
        EXPECT_TRUE(ServerDelivers());
    });
    EXPECT_THAT(m_received.All(), ElementsAre(L"served"));
}

TEST_F(IPCServerLimitsTest, DisconnectsAClientThatExceedsASizeLimit)
{
    const std::string longTopic = "\x0A\x01\0\0\x01"s + std::string((16 << 20) + 1, 't');
    const std::string longData = "\x01\x01\x05\0\0\x04"s + std::string((64 << 20) + 5, 'x');
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket client = RawSocket::ConnectedTo(Path());
        EXPECT_FALSE(client.Send(longTopic));
        EXPECT_EQ(client.ReceiveAll(), "");
        EXPECT_FALSE(ConnectWithTopic().Send(longData));
        EXPECT_TRUE(ServerDelivers());
    });
    EXPECT_THAT(m_received.All(), ElementsAre(L"served"));
}

TEST_F(IPCServerLimitsTest, DropsATruncatedMessage)
{
    const auto server = RunServer();

    ServeWhile([&] {
        for (std::size_t length = 0; length < c_executeA.size(); ++length) {
            const RawSocket client = ConnectWithTopic();
            EXPECT_TRUE(client.Send(c_executeA.substr(0, length)));
        }
        EXPECT_TRUE(ServerDelivers());
    });
    EXPECT_THAT(m_received.All(), ElementsAre(L"served"));
}

TEST_F(IPCServerLimitsTest, AcceptsAMessageThatArrivesByteByByte)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket client = RawSocket::ConnectedTo(Path());
        for (const char byte : c_connect + c_executeA)
            EXPECT_TRUE(client.Send({byte}));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"a"));
    });
}

TEST_F(IPCServerLimitsTest, DisconnectsAStalledClientWithoutDelayingOthers)
{
    const std::string beginnings[] = {"",
                                      "\x0A",
                                      "\x0A\x05\0\0\0to"s,
                                      c_connect + c_executeA.substr(0, 1),
                                      c_connect + c_executeA.substr(0, 9),
                                      c_connect + "\x01\x01\0\0\0\x04"s};
    const auto server = RunServer();

    ServeWhile([&] {
        const auto start = std::chrono::steady_clock::now();
        std::vector<RawSocket> clients;
        for (const std::string& bytes : beginnings) {
            clients.push_back(RawSocket::ConnectedTo(Path()));
            EXPECT_TRUE(clients.back().Send(bytes));
        }
        EXPECT_TRUE(ServerDelivers());
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
        for (const RawSocket& client : clients)
            EXPECT_TRUE(client.IsClosedByPeer());
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    });
}

TEST_F(IPCServerLimitsTest, KeepsAClientThatIsSilentBetweenMessages)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket patient = ConnectWithTopic();
        EXPECT_TRUE(RawSocket::ConnectedTo(Path()).IsClosedByPeer());
        EXPECT_TRUE(patient.Send(c_executeA));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"a"));
    });
}

TEST_F(IPCServerLimitsTest, CountsTimeOnlyWhileTheLoopRuns)
{
    const auto server = RunServer();
    const RawSocket client = RawSocket::ConnectedTo(Path());

    // The server has received all but the last byte of the Connect message when its loop stops for
    // longer than the limit of 2 seconds.
    EXPECT_TRUE(client.Send(c_connect.substr(0, 5)));
    ServeWhile([&] { EXPECT_TRUE(ServerDelivers()); });
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    EXPECT_TRUE(client.Send(c_connect.substr(5) + c_executeA));

    ServeWhile([&] { EXPECT_THAT(m_received.Await(2), ElementsAre(L"served", L"a")); });
}

TEST_F(IPCServerLimitsTest, AllocatesNoMemoryForDataThatHasNotArrived)
{
    constexpr int clients = 100;
    rusage before{};
    rusage after{};
    const auto server = RunServer();

    ServeWhile([&] {
        EXPECT_TRUE(ServerDelivers());
        ::getrusage(RUSAGE_SELF, &before);
        std::vector<RawSocket> announcing;
        for (int i = 0; i < clients; ++i) {
            announcing.push_back(ConnectWithTopic());
            EXPECT_TRUE(announcing.back().Send("\x01\x01\0\0\0\x04"s + std::string(100, 'x')));
        }
        EXPECT_TRUE(ServerDelivers());
        ::getrusage(RUSAGE_SELF, &after);
    });
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 100 * 1024) << "in KiB";
}

TEST_F(IPCServerLimitsTest, LetsClientsWaitWithoutSpinningWhenOutOfDescriptors)
{
    const auto server = RunServer();
    const std::filesystem::path path = Path();

    ServeWhile([&] {
        const RawSocket waiting;
        {
            const FewDescriptors none(0);
            EXPECT_EQ(waiting.Connect(path), 0);
            EXPECT_TRUE(waiting.Send(c_connect + c_executeA));
            const std::clock_t start = std::clock();
            std::this_thread::sleep_for(std::chrono::seconds(1));
            EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC / 2);
        }
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"a"));
    });
}

TEST_F(IPCServerLimitsTest, DisconnectsTheLongestSilentClientWhenDescriptorsRunOut)
{
    const auto server = RunServer();
    const TString<wchar_t> service = Service();

    ServeWhile([&] {
        const RawSocket first = ConnectWithTopic();
        const RawSocket second = ConnectWithTopic();
        EXPECT_TRUE(first.Send(c_executeA));
        m_received.Await(1);
        {
            const FewDescriptors oneForTheClient(1);
            EXPECT_TRUE(IPCClient::Connect(service, L"served"));
        }
        EXPECT_TRUE(second.IsClosedByPeer());
        EXPECT_TRUE(first.Send(c_executeA));
        EXPECT_THAT(m_received.Await(3), ElementsAre(L"a", L"served", L"a"));
    });
}

TEST_F(IPCServerLimitsTest, DisconnectsTheLongestSilentClientAboveMaxSessions)
{
    const RaisedDescriptorLimit descriptors;
    const auto server = RunServer();

    ServeWhile([&] {
        std::vector<RawSocket> clients;
        while (clients.size() < IPCServer::c_maxSessions) {
            clients.push_back(ConnectWithTopic());
            EXPECT_TRUE(clients.back().Send(c_executeA));
            EXPECT_THAT(m_received.Await(clients.size()), SizeIs(clients.size()));
        }

        EXPECT_TRUE(ServerDelivers());

        EXPECT_TRUE(clients.front().IsClosedByPeer());
        EXPECT_TRUE(clients[1].Send(c_executeA));
        EXPECT_THAT(m_received.Await(clients.size() + 2), SizeIs(clients.size() + 2));
    });
}

// Sanitizers keep freed memory.
#ifndef TOOLKIT_SANITIZER
TEST_F(IPCServerLimitsTest, FreesAMessageAfterDelivery)
{
    const std::string characters(std::size_t{36} << 20, 'x');
    IPCServer server(Service());
    server.AddListener(CreateListener([&](const auto&) { m_received.Add(L"text"); }));
    EXPECT_TRUE(server.Run());

    ServeWhile([&] {
        std::vector<RawSocket> clients;
        const long before = GetResidentMebibytes();
        while (clients.size() < 6) {
            clients.push_back(ConnectWithTopic());
            EXPECT_TRUE(clients.back().Send("\x01\x01\0\0\x40\x02"s + characters));
            m_received.Await(clients.size());
        }
        EXPECT_LT(GetResidentMebibytes() - before, 100);
    });
}
#endif

} // namespace
} // namespace Toolkit
