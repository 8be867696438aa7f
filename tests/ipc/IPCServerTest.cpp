#include "toolkit/ipc/IPCServer.h"

#include "toolkit/encoding/UTF8.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/ipc/IPCClient.h"
#include "toolkit/threading/FrameworkHold.h"

#include "support/ScopedEnvironment.h"
#include "support/ScopedLocale.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>

#include <ctime>
#include <list>
#include <memory>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/stat.h>

#include "ipc/ChildProgram.h"
#include "ipc/EventLoop.h"
#include "ipc/RawSocket.h"

namespace Toolkit {
namespace {

using Testing::ChildProgram;
using testing::ElementsAre;
using Testing::MakeListener;
using Testing::RawSocket;
using Testing::ReceivedTexts;
using Testing::ScopedEnvironment;
using Testing::ScopedLocale;
using Testing::ServeWhile;
using Testing::TempDir;
using namespace std::string_literals;

constexpr uid_t c_otherUser = 65534;

// The most characters that travel; fewer where processes are instrumented for their threads, since
// these may need longer on a busy machine than a client waits.
#ifdef __SANITIZE_THREAD__
constexpr std::size_t c_mostCharacters = std::size_t{1} << 20;
#else
constexpr std::size_t c_mostCharacters = std::size_t{16} << 20;
#endif

// "Connect" with the topic "t".
const std::string c_connect = "\x0A\x01\0\0\0t"s;
// "Execute" with the text "a".
const std::string c_executeA = "\x01\x01\x08\0\0\0a\0\0\0\0\0\0\0"s;

// What a child process does under another user; its exit code is the result.
int RunAsOtherUser(const std::function<int()>& action)
{
    const pid_t process = ::fork();
    if (process == 0)
        ::_exit(::setuid(c_otherUser) == 0 ? action() : 255);
    int status = 0;
    ::waitpid(process, &status, 0);
    return WEXITSTATUS(status);
}

class IPCServerTest : public testing::Test {
protected:
    TString<wchar_t> Service() const { return m_directory.File(L"service"); }
    std::filesystem::path Path() const { return m_directory.Path() / "service"; }

    std::unique_ptr<IPCServer> MakeServer() { return MakeServer(Service()); }
    std::unique_ptr<IPCServer> MakeServer(const TString<wchar_t>& service)
    {
        auto server = std::make_unique<IPCServer>(service);
        server->AddListener(Keep(m_received));
        return server;
    }

    std::unique_ptr<IPCServer> RunServer()
    {
        std::unique_ptr<IPCServer> server = MakeServer();
        EXPECT_TRUE(server->Run());
        return server;
    }

    // A client that has sent its topic and been answered.
    RawSocket Introduced() const
    {
        RawSocket client = RawSocket::ConnectedTo(Path());
        EXPECT_TRUE(client.Send(c_connect));
        EXPECT_EQ(client.Receive(1), "\x0A");
        return client;
    }

    bool IsServed()
    {
        const std::size_t before = m_received.All().size();
        return IPCClient::Connect(Service(), L"served") &&
               m_received.Await(before + 1).back() == L"served";
    }

    bool IsSocket() const { return std::filesystem::is_socket(Path()); }

    const TempDir m_directory;
    const ScopedEnvironment m_home{"HOME", m_directory.Path()};
    const FrameworkHold m_framework;
    ReceivedTexts m_received;
};

TEST_F(IPCServerTest, ATextReachesTheListener)
{
    const auto server = RunServer();

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(Service(), L"-open file.txt"));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"-open file.txt"));
    });
}

TEST_F(IPCServerTest, EveryTextArrivesInEveryLocale)
{
    const std::vector<std::wstring> texts = {L"",
                                             L"a",
                                             L"two\nlines",
                                             L"\u00E9\u0394\u0416",
                                             L"\u6F22\uFFFF",
                                             L"\U0001F600",
                                             L"\U000E0001\U0010FFFF",
                                             std::wstring(65536, L'\u6F22'),
                                             std::wstring(1, static_cast<wchar_t>(0xDFFF))};
    const auto server = RunServer();
    for (const char* locale : {"C", "C.utf8"}) {
        const ScopedLocale scoped(locale);
        ServeWhile([&] {
            const std::size_t before = m_received.All().size();
            for (const std::wstring& text : texts)
                EXPECT_TRUE(IPCClient::Connect(Service(), text));
            const std::vector<std::wstring> all = m_received.Await(before + texts.size());
            EXPECT_EQ(std::vector(all.begin() + static_cast<long>(before), all.end()), texts);
        });
    }
}

TEST_F(IPCServerTest, TheLongestTextArrives)
{
    const std::wstring longest(c_mostCharacters, L'x');
    const std::wstring ofFourBytes(c_mostCharacters / 4, L'\U0001F600');
    const auto server = RunServer();

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(Service(), longest));
        EXPECT_TRUE(IPCClient::Connect(Service(), ofFourBytes));
        const std::vector<std::wstring> received = m_received.Await(2);
        EXPECT_TRUE(received == (std::vector{longest, ofFourBytes}));
    });
}

TEST_F(IPCServerTest, TwoListenersAreCalledInOrder)
{
    IPCServer server(Service());
    server.AddListener(MakeListener([&](const auto& text) { m_received.Add(L"1" + text); }));
    server.AddListener(MakeListener([&](const auto& text) { m_received.Add(L"2" + text); }));
    ASSERT_TRUE(server.Run());

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(Service(), L"a"));
        m_received.Await(2);
        EXPECT_TRUE(IPCClient::Connect(Service(), L"b"));
        EXPECT_THAT(m_received.Await(4), ElementsAre(L"1a", L"2a", L"1b", L"2b"));
    });
}

TEST_F(IPCServerTest, WithoutListenersTextsAreDropped)
{
    IPCServer server(Service());
    ASSERT_TRUE(server.Run());

    ServeWhile([&] { EXPECT_TRUE(IPCClient::Connect(Service(), L"text")); });
}

TEST_F(IPCServerTest, ALocalTextNeedsNoRun)
{
    const auto server = MakeServer();

    server->SendExecuteEvent(L"local");

    EXPECT_THAT(m_received.All(), ElementsAre(L"local"));
    EXPECT_FALSE(std::filesystem::exists(Path()));
    EXPECT_FALSE(IPCClient::Connect(Service(), L"text"));
}

TEST_F(IPCServerTest, AListenerMaySendAndRemoveItself)
{
    const auto server = RunServer();
    smart_ptr<IPCConnectionEvent> listener;
    listener = MakeListener([&](const auto& text) {
        EXPECT_TRUE(server->RemoveListener(listener));
        server->SendExecuteEvent(L"again " + text);
    });
    server->AddListener(listener);

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(Service(), L"a"));
        EXPECT_THAT(m_received.Await(2), ElementsAre(L"a", L"again a"));
    });
}

// The connection whose text is being worked on waits; the others go on.
TEST_F(IPCServerTest, ALoopInsideAListenerServesTheOtherClients)
{
    const auto server = RunServer();
    server->AddListener(MakeListener([&](const auto& text) {
        if (text == L"a")
            ServeWhile([&] { EXPECT_TRUE(IsServed()); });
    }));

    ServeWhile([&] {
        const RawSocket client = Introduced();
        EXPECT_TRUE(client.Send(c_executeA));
        m_received.Await(1);
        EXPECT_TRUE(client.Send("\x01\x01\x08\0\0\0b\0\0\0\0\0\0\0"s));
        EXPECT_THAT(m_received.Await(3), ElementsAre(L"a", L"served", L"b"));
    });
}

// What waits for the listener's end must not keep the inner loop awake.
TEST_F(IPCServerTest, ALoopInsideAListenerRests)
{
    const auto server = RunServer();
    std::clock_t used = 0;
    server->AddListener(MakeListener([&](const auto& text) {
        if (text != L"a")
            return;
        const std::clock_t start = std::clock();
        ServeWhile([] { std::this_thread::sleep_for(std::chrono::seconds(1)); });
        used = std::clock() - start;
    }));

    ServeWhile([&] {
        const RawSocket client = Introduced();
        EXPECT_TRUE(client.Send(c_executeA));
        m_received.Await(1);
        EXPECT_TRUE(client.Send("\x01\x01\x08\0\0\0b\0\0\0\0\0\0\0"s));
        EXPECT_THAT(m_received.Await(2), ElementsAre(L"a", L"b"));
    });
    EXPECT_LT(used, CLOCKS_PER_SEC / 2);
}

TEST_F(IPCServerTest, WhatAListenerThrowsEndsTheLoopAndNotTheServer)
{
    const auto server = RunServer();
    const auto thrower =
        MakeListener([](const auto&) { throw std::runtime_error("thrown by the listener"); });
    server->AddListener(thrower);

    std::thread client([this] { EXPECT_TRUE(IPCClient::Connect(Service(), L"text")); });
    EXPECT_THROW(wxConsoleEventLoop().Run(), std::runtime_error);
    client.join();
    server->RemoveListener(thrower);

    ServeWhile([&] { EXPECT_TRUE(IsServed()); });
    EXPECT_THAT(m_received.All(), ElementsAre(L"text", L"served"));
}

TEST_F(IPCServerTest, TheBytesAreThoseOfTheFramework)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket client = RawSocket::ConnectedTo(Path());
        EXPECT_TRUE(
            client.Send("\x0A\x03\0\0\0h\xC3\xA9\x01\x01\x0C\0\0\0h\0\0\0\xE9\0\0\0\0\0\0\0\x0B"s));
        EXPECT_EQ(client.ReceiveAll(), "\x0A");
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"h\u00E9"));
    });
}

TEST_F(IPCServerTest, AConnectionMayCarrySeveralTexts)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket client = Introduced();
        EXPECT_TRUE(client.Send(c_executeA + c_executeA));
        EXPECT_THAT(m_received.Await(2), ElementsAre(L"a", L"a"));
        EXPECT_TRUE(client.Send(c_executeA));
        EXPECT_THAT(m_received.Await(3), ElementsAre(L"a", L"a", L"a"));
    });
}

TEST_F(IPCServerTest, TheFormatTellsUtf8FromWideCharacters)
{
    const std::pair<std::string, std::wstring> cases[] = {
        {"\x01\x11\x03\0\0\0\xC3\xA9\0"s, L"\u00E9"},                // 17: UTF-8
        {"\x01\x11\x02\0\0\0\xC3\xA9"s, L"\u00E9"},                  // without terminator
        {"\x01\x12\x08\0\0\0\xE9\0\0\0\0\0\0\0"s, L"\u00E9"},        // 18: four bytes a character
        {"\x01\x0D\x08\0\0\0\xE9\0\0\0\0\0\0\0"s, L"\u00E9"},        // any other: the same
        {"\x01\xFF\x07\0\0\0\xE9\0\0\0\xE9\0\0"s, L"\u00E9"},        // no whole second character
        {"\x01\x01\x10\0\0\0a\0\0\0\0\0\0\0b\0\0\0\0\0\0\0"s, L"a"}, // ends at its terminator
        {"\x01\x01\0\0\0\0"s, L""}};
    const auto server = RunServer();
    for (const auto& [bytes, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        const std::size_t before = m_received.All().size();
        ServeWhile([&] {
            EXPECT_TRUE(Introduced().Send(bytes));
            EXPECT_EQ(m_received.Await(before + 1).back(), expected);
        });
    }
}

TEST_F(IPCServerTest, InvalidUtf8IsNotHandedOn)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket client = Introduced();
        EXPECT_TRUE(client.Send("\x01\x11\x03\0\0\0\xE0\x80\0"s + c_executeA));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"a"));
    });
}

TEST_F(IPCServerTest, BytesOutOfPlaceEndTheConnection)
{
    const std::string cases[] = {"\x0B",                        // no topic before
                                 "\x01\x01\x04\0\0\0\0\0\0\0"s, // no topic before
                                 "GET / HTTP/1.1\r\n\r\n",      // another protocol
                                 "\x0A\x01\0\0\x01t"s,          // a topic of 16 MiB and 1 byte
                                 "\x0A\xFF\xFF\xFF\xFF"s,       //
                                 c_connect + c_connect,         // a second topic
                                 c_connect + "\x02", // what a server of texts does not offer
                                 c_connect + "\x09", //
                                 c_connect + "\x01\x01\x05\0\0\x04"s,     // 64 MiB and 5 bytes
                                 c_connect + "\x01\x01\xFF\xFF\xFF\xFF"s, //
                                 c_connect + "\x0B"};                     // the end
    const auto server = RunServer();

    ServeWhile([&] {
        for (const std::string& bytes : cases) {
            SCOPED_TRACE(testing::PrintToString(bytes));
            const RawSocket client = RawSocket::ConnectedTo(Path());
            EXPECT_TRUE(client.Send(bytes));
            EXPECT_TRUE(client.IsClosedByPeer());
        }
        EXPECT_TRUE(IsServed());
    });
    EXPECT_THAT(m_received.All(), ElementsAre(L"served"));
}

TEST_F(IPCServerTest, WhatIsBeyondTheLimitsIsNotTakenEvenWhenItComes)
{
    const std::string longTopic = "\x0A\x01\0\0\x01"s + std::string((16 << 20) + 1, 't');
    const std::string longData = "\x01\x01\x05\0\0\x04"s + std::string((64 << 20) + 5, 'x');
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket boastful = RawSocket::ConnectedTo(Path());
        EXPECT_FALSE(boastful.Send(longTopic));
        EXPECT_EQ(boastful.ReceiveAll(), "");
        EXPECT_FALSE(Introduced().Send(longData));
        EXPECT_TRUE(IsServed());
    });
    EXPECT_THAT(m_received.All(), ElementsAre(L"served"));
}

TEST_F(IPCServerTest, ATextCutShortIsNotHandedOn)
{
    const auto server = RunServer();

    ServeWhile([&] {
        for (std::size_t length = 0; length < c_executeA.size(); ++length) {
            const RawSocket client = Introduced();
            EXPECT_TRUE(client.Send(c_executeA.substr(0, length)));
        }
        EXPECT_TRUE(IsServed());
    });
    EXPECT_THAT(m_received.All(), ElementsAre(L"served"));
}

TEST_F(IPCServerTest, ATextMayArriveByteByByte)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket client = RawSocket::ConnectedTo(Path());
        for (const char byte : c_connect + c_executeA)
            EXPECT_TRUE(client.Send({byte}));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"a"));
    });
}

TEST_F(IPCServerTest, ASlowMessageEndsItsConnectionAndDelaysNobody)
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
        EXPECT_TRUE(IsServed());
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
        for (const RawSocket& client : clients)
            EXPECT_TRUE(client.IsClosedByPeer());
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    });
}

// Between two texts a client may take its time.
TEST_F(IPCServerTest, AClientThatOwesNothingStaysConnected)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const RawSocket patient = Introduced();
        EXPECT_TRUE(RawSocket::ConnectedTo(Path()).IsClosedByPeer());
        EXPECT_TRUE(patient.Send(c_executeA));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"a"));
    });
}

TEST_F(IPCServerTest, WhatCameWhileTheLoopWasBusyIsInTime)
{
    const auto server = RunServer();
    const RawSocket client = RawSocket::ConnectedTo(Path());

    // The server has seen half of the topic when the loop stops for longer than its patience.
    EXPECT_TRUE(client.Send(c_connect.substr(0, 5)));
    ServeWhile([&] { EXPECT_TRUE(IsServed()); });
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    EXPECT_TRUE(client.Send(c_connect.substr(5) + c_executeA));

    ServeWhile([&] { EXPECT_THAT(m_received.Await(2), ElementsAre(L"served", L"a")); });
}

TEST_F(IPCServerTest, TheLoopMayRunOnAnotherThread)
{
    std::thread thread([this] {
        const auto server = RunServer();
        ServeWhile([this] {
            EXPECT_TRUE(RawSocket::ConnectedTo(Path()).IsClosedByPeer());
            EXPECT_TRUE(IsServed());
        });
    });
    thread.join();
}

TEST_F(IPCServerTest, AnAnnouncedLengthTakesNoMemory)
{
    constexpr int clients = 100;
    rusage before{};
    rusage after{};
    const auto server = RunServer();

    ServeWhile([&] {
        EXPECT_TRUE(IsServed());
        ::getrusage(RUSAGE_SELF, &before);
        std::vector<RawSocket> announcing;
        for (int i = 0; i < clients; ++i) {
            announcing.push_back(Introduced());
            EXPECT_TRUE(announcing.back().Send("\x01\x01\0\0\0\x04"s + std::string(100, 'x')));
        }
        EXPECT_TRUE(IsServed());
        ::getrusage(RUSAGE_SELF, &after);
    });
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 100 * 1024) << "kilobytes";
}

TEST_F(IPCServerTest, WithoutDescriptorsClientsWaitAndTheLoopRests)
{
    const auto server = RunServer();
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit none{3, limit.rlim_max};

    ServeWhile([&] {
        const RawSocket connected = Introduced();
        const RawSocket waiting;
        ::setrlimit(RLIMIT_NOFILE, &none);
        EXPECT_EQ(waiting.Connect(Path()), 0);
        EXPECT_TRUE(waiting.Send(c_connect + c_executeA));
        const std::clock_t start = std::clock();
        std::this_thread::sleep_for(std::chrono::seconds(1));
        EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC / 2);
        EXPECT_TRUE(connected.Send(c_executeA));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"a"));

        ::setrlimit(RLIMIT_NOFILE, &limit);
        EXPECT_THAT(m_received.Await(2), ElementsAre(L"a", L"a"));
    });
}

TEST_F(IPCServerTest, TheFileIsForItsOwnerAlone)
{
    for (const mode_t mask : {0, 022, 077}) {
        const mode_t oldMask = ::umask(mask);
        const auto server = RunServer();
        ::umask(oldMask);
        struct stat status {};
        EXPECT_EQ(::stat(Path().c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0600u);
    }
}

TEST_F(IPCServerTest, AnotherUserCannotConnect)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root may become another user";
    const auto server = RunServer();
    std::filesystem::permissions(m_directory.Path(), std::filesystem::perms(0755));

    EXPECT_EQ(RunAsOtherUser(
                  [this] { return RawSocket().Connect(Path()) == -1 && errno == EACCES ? 0 : 1; }),
              0);
}

TEST_F(IPCServerTest, AnotherUserWhoGetsInIsNotAnswered)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root may become another user";
    const auto server = RunServer();
    std::filesystem::permissions(m_directory.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(Path(), std::filesystem::perms(0666));

    ServeWhile([&] {
        EXPECT_EQ(RunAsOtherUser([this] {
                      const RawSocket client = RawSocket::ConnectedTo(Path());
                      client.Send(c_connect + c_executeA);
                      return client.ReceiveAll().empty() ? 0 : 1;
                  }),
                  0);
        EXPECT_TRUE(IsServed());
    });
    EXPECT_THAT(m_received.All(), ElementsAre(L"served"));
}

TEST_F(IPCServerTest, TheFileOfACrashedServerIsTakenOver)
{
    ChildProgram crashed(TOOLKIT_TEST_IPC_SERVER, {Path()});
    EXPECT_EQ(crashed.ReadLine(), "ready");
    crashed.Send(SIGKILL);
    crashed.WaitForExitCode();
    EXPECT_TRUE(IsSocket());

    const auto server = RunServer();

    ServeWhile([&] { EXPECT_TRUE(IsServed()); });
}

TEST_F(IPCServerTest, ALivingServerKeepsItsName)
{
    const auto first = RunServer();

    auto second = MakeServer();
    EXPECT_FALSE(second->Run());
    second.reset();

    EXPECT_TRUE(IsSocket());
    ServeWhile([&] { EXPECT_TRUE(IsServed()); });
}

TEST_F(IPCServerTest, AStoppedServerKeepsItsName)
{
    const ChildProgram stopped(TOOLKIT_TEST_IPC_SERVER, {Path()});
    EXPECT_EQ(stopped.ReadLine(), "ready");
    stopped.Send(SIGSTOP);

    EXPECT_FALSE(MakeServer()->Run());

    stopped.Send(SIGCONT);
    EXPECT_TRUE(IPCClient::Connect(Service(), L"still there"));
    EXPECT_EQ(stopped.ReadLine(), "still there");
}

TEST_F(IPCServerTest, OfServersThatTakeOverAtOnceExactlyOneRuns)
{
    constexpr int rounds = 10;
    for (int round = 0; round < rounds; ++round) {
        EXPECT_EQ(RawSocket().Bind(Path()), 0);
        std::list<ChildProgram> servers;
        for (int i = 0; i < 4; ++i)
            servers.emplace_back(TOOLKIT_TEST_IPC_SERVER, std::vector<std::string>{Path()});
        int running = 0;
        for (const ChildProgram& server : servers)
            running += server.ReadLine() == "ready" ? 1 : 0;
        EXPECT_EQ(running, 1) << "in round " << round;
        EXPECT_TRUE(IPCClient::Connect(Service(), L"quit"));
        for (ChildProgram& server : servers)
            server.WaitForExitCode();
        EXPECT_FALSE(std::filesystem::exists(Path()));
    }
}

TEST_F(IPCServerTest, OnlyASocketIsReplaced)
{
    m_directory.WriteFile(L"file", "content");
    std::filesystem::create_directory(m_directory.Path() / "directory");
    EXPECT_EQ(RawSocket().Bind(m_directory.Path() / "stale"), 0);
    std::filesystem::create_symlink("stale", m_directory.Path() / "link");

    for (const wchar_t* name : {L"file", L"directory", L"link", L"none/service", L"directory/"})
        EXPECT_FALSE(MakeServer(m_directory.File(name))->Run()) << UTF8::ToUTF8(std::wstring(name));

    EXPECT_EQ(m_directory.ReadFile(L"file"), "content");
    EXPECT_TRUE(std::filesystem::is_symlink(m_directory.Path() / "link"));
    EXPECT_TRUE(std::filesystem::is_socket(m_directory.Path() / "stale"));
}

TEST_F(IPCServerTest, TheSocketOfAnotherUserIsNotReplaced)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root may give a file away";
    EXPECT_EQ(RawSocket().Bind(Path()), 0);
    EXPECT_EQ(::chown(Path().c_str(), c_otherUser, c_otherUser), 0);

    EXPECT_FALSE(MakeServer()->Run());

    EXPECT_TRUE(IsSocket());
}

TEST_F(IPCServerTest, TheDestructorRemovesTheFile)
{
    auto server = RunServer();
    EXPECT_TRUE(IsSocket());

    server.reset();

    EXPECT_FALSE(std::filesystem::exists(Path()));
    EXPECT_FALSE(IPCClient::Connect(Service(), L"text"));
}

TEST_F(IPCServerTest, TheDestructorKeepsTheFileOfAnother)
{
    auto server = RunServer();
    std::filesystem::remove(Path());
    const RawSocket other = RawSocket::ListeningAt(Path());

    server.reset();

    EXPECT_TRUE(IsSocket());
}

TEST_F(IPCServerTest, AChildProcessDoesNotRemoveTheFile)
{
    auto server = RunServer();

    const pid_t process = ::fork();
    if (process == 0) {
        server.reset();
        ::_exit(0);
    }
    ::waitpid(process, nullptr, 0);

    EXPECT_TRUE(IsSocket());
    ServeWhile([&] { EXPECT_TRUE(IsServed()); });
}

TEST_F(IPCServerTest, ANameWithoutSeparatorIsAFileInTheWorkingDirectory)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_directory.Path());
    auto server = MakeServer(L"service");
    EXPECT_TRUE(server->Run());
    EXPECT_TRUE(IsSocket());
    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(L"service", L"relative"));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"relative"));
    });

    std::filesystem::current_path(before);
    server.reset();

    EXPECT_FALSE(std::filesystem::exists(Path()));
}

TEST_F(IPCServerTest, ANumberIsNoService)
{
    EXPECT_FALSE(MakeServer(L"0")->Run());
    EXPECT_FALSE(MakeServer(L"42424")->Run());
    EXPECT_FALSE(MakeServer(std::wstring(L"\0abstract", 9))->Run());
}

TEST_F(IPCServerTest, ANameTooLongForAnAddressIsShortenedAlikeOnBothSides)
{
    for (const std::size_t length : {100, 107, 108, 150, 255}) {
        SCOPED_TRACE(length);
        const std::size_t missing = length - m_directory.Path().native().size() - 1;
        const TString<wchar_t> service = m_directory.File(std::wstring(missing, L'x'));
        const auto server = MakeServer(service);
        ASSERT_TRUE(server->Run());
        EXPECT_FALSE(IPCClient::Connect(service + L"x", L"not this one"));
        EXPECT_EQ(std::filesystem::is_socket(std::string(UTF8::ToUTF8(service))), length <= 107);
        const std::size_t before = m_received.All().size();
        ServeWhile([&] {
            EXPECT_TRUE(IPCClient::Connect(service, L"text"));
            EXPECT_EQ(m_received.Await(before + 1).size(), before + 1);
        });
    }
}

TEST_F(IPCServerTest, TheDefaultServiceIsNamedAfterTheApplication)
{
    PathManager::CreateInstance();
    const TString<wchar_t> service =
        L"/tmp/" + PathManager::GetInstance()->GetApplicationUniqueName() + L".ipc";
    const auto server = MakeServer(L"");
    PathManager::ReleaseInstance();
    ASSERT_TRUE(server->Run());

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(service, L"text"));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"text"));
    });
}

TEST_F(IPCServerTest, WithoutAPathManagerThereIsNoDefaultService)
{
    EXPECT_FALSE(MakeServer(L"")->Run());
}

TEST_F(IPCServerTest, ASecondRunChangesNothing)
{
    const auto server = RunServer();

    EXPECT_TRUE(server->Run());

    ServeWhile([&] { EXPECT_TRUE(IsServed()); });
}

TEST_F(IPCServerTest, RunBringsALostFileBack)
{
    const auto server = RunServer();
    std::filesystem::remove(Path());

    EXPECT_TRUE(server->Run());

    EXPECT_TRUE(IsSocket());
    ServeWhile([&] { EXPECT_TRUE(IsServed()); });
}

TEST_F(IPCServerTest, DestroyingTheServerEndsItsConnections)
{
    auto server = RunServer();
    std::vector<RawSocket> clients;
    ServeWhile([&] {
        clients.push_back(RawSocket::ConnectedTo(Path()));
        clients.push_back(Introduced());
        EXPECT_TRUE(clients.back().Send(c_executeA.substr(0, 9)));
        EXPECT_TRUE(IsServed());
    });

    server.reset();

    for (const RawSocket& client : clients)
        EXPECT_TRUE(client.IsClosedByPeer());
}

TEST_F(IPCServerTest, AClientOfTheFrameworkAloneIsServed)
{
    const auto server = RunServer();

    ServeWhile([&] {
        ChildProgram client(TOOLKIT_TEST_BARE_CLIENT, {Path(), "h\xC3\xA9 \xF0\x9F\x98\x80"});
        EXPECT_EQ(client.WaitForExitCode(), 0);
        EXPECT_THAT(m_received.Await(2), ElementsAre(L"h\u00E9 \U0001F600", L"h\u00E9 \U0001F600"));
    });
}

} // namespace
} // namespace Toolkit
