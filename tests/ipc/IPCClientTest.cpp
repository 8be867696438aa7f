#include "toolkit/ipc/IPCClient.h"

#include "toolkit/threading/FrameworkHold.h"

#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <future>
#include <iterator>
#include <list>
#include <set>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "ipc/ChildProgram.h"
#include "ipc/EventLoop.h"
#include "ipc/RawSocket.h"

namespace Toolkit {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using TestSupport::ChildProgram;
using TestSupport::CreateCollector;
using TestSupport::RawSocket;
using TestSupport::ReceivedMessages;
using TestSupport::ScopedEnvironment;
using TestSupport::ServeWhile;
using TestSupport::TempDir;
using Clock = std::chrono::steady_clock;
using namespace std::string_literals;

class IPCClientTest : public testing::Test {
protected:
    TString<wchar_t> Service() const { return m_directory.File(L"service"); }
    std::filesystem::path Path() const { return m_directory.Path() / "service"; }

    // Sends on another thread, so that the test can play the server.
    std::future<bool> Send(const TString<wchar_t>& message) const
    {
        return std::async(std::launch::async,
                          [message, this] { return IPCClient::Connect(Service(), message); });
    }

    static std::size_t CountDescriptors()
    {
        const std::filesystem::directory_iterator all("/proc/self/fd");
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }

    const TempDir m_directory;
    const ScopedEnvironment m_home{"HOME", m_directory.Path()};
    const FrameworkHold m_framework;
};

TEST_F(IPCClientTest, SpeaksTheWxWidgetsProtocol)
{
    const RawSocket listener = RawSocket::ListeningAt(Path());
    std::future<bool> sent = Send(L"h\u00E9");

    const RawSocket client = listener.Accept();
    EXPECT_EQ(client.Receive(8), "\x0A\x03\0\0\0h\xC3\xA9"s);
    EXPECT_TRUE(client.Send("\x0A"));
    EXPECT_EQ(client.ReceiveAll(), "\x01\x01\x0C\0\0\0h\0\0\0\xE9\0\0\0\0\0\0\0\x0B"s);

    EXPECT_TRUE(sent.get());
}

TEST_F(IPCClientTest, SendsAnEmptyMessageAsANullCharacter)
{
    const RawSocket listener = RawSocket::ListeningAt(Path());
    std::future<bool> sent = Send(L"");

    const RawSocket client = listener.Accept();
    EXPECT_EQ(client.Receive(5), "\x0A\0\0\0\0"s);
    EXPECT_TRUE(client.Send("\x0A"));
    EXPECT_EQ(client.ReceiveAll(), "\x01\x01\x04\0\0\0\0\0\0\0\x0B"s);

    EXPECT_TRUE(sent.get());
}

TEST_F(IPCClientTest, EndsAMessageAtItsFirstNullCharacter)
{
    const RawSocket listener = RawSocket::ListeningAt(Path());
    std::future<bool> sent = Send(std::wstring(L"a\0b", 3));

    const RawSocket client = listener.Accept();
    EXPECT_EQ(client.Receive(6), "\x0A\x01\0\0\0a"s);
    EXPECT_TRUE(client.Send("\x0A"));
    EXPECT_EQ(client.ReceiveAll(), "\x01\x01\x08\0\0\0a\0\0\0\0\0\0\0\x0B"s);

    EXPECT_TRUE(sent.get());
}

TEST_F(IPCClientTest, EncodesASurrogateAsThreeBytesInTheTopic)
{
    const RawSocket listener = RawSocket::ListeningAt(Path());
    std::future<bool> sent = Send(std::wstring(1, static_cast<wchar_t>(0xD800)));

    const RawSocket client = listener.Accept();
    EXPECT_EQ(client.Receive(8), "\x0A\x03\0\0\0\xED\xA0\x80"s);
    EXPECT_TRUE(client.Send("\x0A"));
    EXPECT_EQ(client.ReceiveAll(), "\x01\x01\x08\0\0\0\0\xD8\0\0\0\0\0\0\x0B"s);

    EXPECT_TRUE(sent.get());
}

TEST_F(IPCClientTest, LeavesNoDescriptorOpenWithoutAServer)
{
    const std::size_t before = CountDescriptors();

    EXPECT_FALSE(IPCClient::Connect(Service(), L"text"));
    EXPECT_FALSE(IPCClient::Connect(m_directory.File(L"none/service"), L"text"));
    EXPECT_FALSE(IPCClient::Connect(m_directory.WriteFile(L"file", ""), L"text"));
    EXPECT_FALSE(IPCClient::Connect(m_directory.File(L""), L"text"));

    EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(IPCClientTest, FailsForAnInvalidServiceName)
{
    const std::wstring names[] = {L"", L"0", L"3000", std::wstring(L"\0abstract", 9),
                                  std::wstring(1, static_cast<wchar_t>(0x110000))};
    for (const std::wstring& name : names)
        EXPECT_FALSE(IPCClient::Connect(name, L"text")) << testing::PrintToString(name);
}

TEST_F(IPCClientTest, ReplacesCharactersAboveU10FFFFOnlyInTheTopic)
{
    const RawSocket listener = RawSocket::ListeningAt(Path());
    std::future<bool> sent =
        Send(std::wstring{L'a', static_cast<wchar_t>(0x110000), static_cast<wchar_t>(-1)});

    const RawSocket client = listener.Accept();
    EXPECT_EQ(client.Receive(12), "\x0A\x07\0\0\0a\xEF\xBF\xBD\xEF\xBF\xBD"s);
    EXPECT_TRUE(client.Send("\x0A"));
    EXPECT_EQ(client.ReceiveAll(),
              "\x01\x01\x10\0\0\0a\0\0\0\0\0\x11\0\xFF\xFF\xFF\xFF\0\0\0\0\x0B"s);

    EXPECT_TRUE(sent.get());
}

TEST_F(IPCClientTest, RejectsASymbolicLink)
{
    ReceivedMessages received;
    IPCServer server(Service());
    server.AddListener(CreateCollector(received));
    ASSERT_TRUE(server.Run());
    std::filesystem::create_symlink("service", m_directory.Path() / "link");

    ServeWhile([&] { EXPECT_FALSE(IPCClient::Connect(m_directory.File(L"link"), L"text")); });

    EXPECT_FALSE(IPCClient::IsServed(m_directory.File(L"link")));
    EXPECT_THAT(received.All(), IsEmpty());
}

TEST_F(IPCClientTest, RejectsTheSocketFileOfAnotherUser)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root may change the owner of a file";
    ReceivedMessages received;
    IPCServer server(Service());
    server.AddListener(CreateCollector(received));
    ASSERT_TRUE(server.Run());
    EXPECT_EQ(::chown(Path().c_str(), 65534, 65534), 0);

    ServeWhile([&] { EXPECT_FALSE(IPCClient::Connect(Service(), L"text")); });

    EXPECT_FALSE(IPCClient::IsServed(Service()));
    EXPECT_THAT(received.All(), IsEmpty());
}

TEST_F(IPCClientTest, FindsAListeningServerEvenIfItIsBusy)
{
    const RawSocket silent = RawSocket::ListeningAt(m_directory.Path() / "silent");
    const RawSocket full = RawSocket::ListeningAt(m_directory.Path() / "full", 0);
    const RawSocket queued = RawSocket::ConnectedTo(m_directory.Path() / "full");

    EXPECT_TRUE(IPCClient::IsServed(m_directory.File(L"silent")));
    EXPECT_TRUE(IPCClient::IsServed(m_directory.File(L"full")));
}

TEST_F(IPCClientTest, FindsNoServerWhereNobodyListens)
{
    EXPECT_EQ(RawSocket().Bind(Path()), 0);

    EXPECT_FALSE(IPCClient::IsServed(Service()));
    EXPECT_FALSE(IPCClient::IsServed(m_directory.File(L"none")));
    EXPECT_FALSE(IPCClient::IsServed(m_directory.WriteFile(L"file", "")));
    EXPECT_FALSE(IPCClient::IsServed(L""));
    EXPECT_FALSE(IPCClient::IsServed(L"1234"));
}

TEST_F(IPCClientTest, RejectsAMessageOfMoreThan16Mebibytes)
{
    const RawSocket listener = RawSocket::ListeningAt(Path());

    EXPECT_FALSE(IPCClient::Connect(Service(), std::wstring((16 << 20) + 1, L'x')));
    EXPECT_FALSE(IPCClient::Connect(Service(), std::wstring((8 << 20) + 1, L'\u00E9')));
    EXPECT_FALSE(listener.HasWaitingClient());
}

TEST_F(IPCClientTest, FailsWhenTheServerRejectsTheTopicOrDisconnects)
{
    const RawSocket listener = RawSocket::ListeningAt(Path());
    for (const std::string& answer : {""s, "\x09"s, "\0"s, "\xFF"s}) {
        SCOPED_TRACE(testing::PrintToString(answer));
        std::future<bool> sent = Send(L"text");
        RawSocket client = listener.Accept();
        client.Receive(9);
        EXPECT_TRUE(client.Send(answer));
        client.Close();
        EXPECT_FALSE(sent.get());
    }
}

TEST_F(IPCClientTest, RaisesNoSignalWhenTheServerDisconnects)
{
    const RawSocket listener = RawSocket::ListeningAt(Path());
    std::future<bool> sent = Send(std::wstring(1 << 20, L'x'));

    RawSocket client = listener.Accept();
    client.Receive(5 + (1 << 20));
    EXPECT_TRUE(client.Send("\x0A"));
    client.Receive(100);
    client.Close();

    EXPECT_FALSE(sent.get());
}

// Each server fails in its own way: one never accepts, one stops reading after its reply, one has
// a full queue, and one is suspended. All clients wait at the same time.
TEST_F(IPCClientTest, StopsWaitingForAServerAfterTheTimeout)
{
    const RawSocket silent = RawSocket::ListeningAt(m_directory.Path() / "silent");
    const RawSocket half = RawSocket::ListeningAt(m_directory.Path() / "half");
    const RawSocket full = RawSocket::ListeningAt(m_directory.Path() / "full", 0);
    const RawSocket queued = RawSocket::ConnectedTo(m_directory.Path() / "full");
    const ChildProgram stopped(TOOLKIT_TEST_IPC_SERVER, {m_directory.Path() / "stopped"});
    EXPECT_EQ(stopped.ReadLine(), "ready");
    stopped.Send(SIGSTOP);

    const Clock::time_point start = Clock::now();
    std::vector<std::future<bool>> clients;
    for (const wchar_t* name : {L"silent", L"half", L"full", L"stopped"})
        clients.push_back(std::async(std::launch::async, [this, name] {
            return IPCClient::Connect(m_directory.File(name), std::wstring(1 << 20, L'x'));
        }));
    const RawSocket client = half.Accept();
    client.Receive(5 + (1 << 20));
    EXPECT_TRUE(client.Send("\x0A"));

    for (std::future<bool>& result : clients)
        EXPECT_FALSE(result.get());
    EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(IPCClient::c_timeoutMs));
    EXPECT_LT(Clock::now() - start, 4 * std::chrono::milliseconds(IPCClient::c_timeoutMs));
}

TEST_F(IPCClientTest, SendsFromSeveralThreads)
{
    constexpr int threads = 8;
    constexpr int messages = 50;
    ReceivedMessages received;
    IPCServer server(Service());
    server.AddListener(CreateCollector(received));
    ASSERT_TRUE(server.Run());

    ServeWhile([&] {
        std::vector<std::thread> senders;
        for (int thread = 0; thread < threads; ++thread)
            senders.emplace_back([&, thread] {
                for (int message = 0; message < messages; ++message)
                    EXPECT_TRUE(IPCClient::Connect(Service(), std::to_wstring(thread) + L"." +
                                                                  std::to_wstring(message)));
            });
        for (std::thread& sender : senders)
            sender.join();
        received.Await(threads * messages);
    });

    const std::vector<std::wstring> all = received.All();
    EXPECT_THAT(all, SizeIs(threads * messages));
    EXPECT_THAT(std::set<std::wstring>(all.begin(), all.end()), SizeIs(threads * messages));
}

TEST_F(IPCClientTest, SendsFromSeveralProcesses)
{
    constexpr std::size_t processes = 8;
    constexpr std::size_t messages = 25;
    ReceivedMessages received;
    IPCServer server(Service());
    server.AddListener(CreateCollector(received));
    ASSERT_TRUE(server.Run());

    ServeWhile([&] {
        std::list<ChildProgram> clients;
        for (std::size_t i = 0; i < processes; ++i)
            clients.emplace_back(TOOLKIT_TEST_IPC_CLIENT,
                                 std::vector<std::string>{Path(), std::to_string(i) + ".", "25"});
        for (ChildProgram& client : clients)
            EXPECT_EQ(client.WaitForExitCode(), 0);
        received.Await(processes * messages);
    });

    const std::vector<std::wstring> all = received.All();
    EXPECT_THAT(std::set<std::wstring>(all.begin(), all.end()), SizeIs(processes * messages));
}

TEST_F(IPCClientTest, ReachesAServerThatUsesOnlyWxWidgets)
{
    const ChildProgram server(TOOLKIT_TEST_BARE_SERVER, {Path()});
    EXPECT_EQ(server.ReadLine(), "ready");

    for (const std::wstring message : {L"text", L"h\u00E9 \u6F22 \U0001F600", L""})
        EXPECT_TRUE(IPCClient::Connect(Service(), message));
    EXPECT_TRUE(IPCClient::Connect(Service(), std::wstring(100000, L'x')));

    EXPECT_EQ(server.ReadLine(), "text|text");
    EXPECT_EQ(server.ReadLine(), "h\xC3\xA9 \xE6\xBC\xA2 \xF0\x9F\x98\x80|"
                                 "h\xC3\xA9 \xE6\xBC\xA2 \xF0\x9F\x98\x80");
    EXPECT_EQ(server.ReadLine(), "|");
    EXPECT_EQ(server.ReadLine(), std::string(100000, 'x') + "|" + std::string(100000, 'x'));
}

} // namespace
} // namespace Toolkit
